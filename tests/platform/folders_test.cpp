// Mount points, what a folder shows, and paths between the program and the disk.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "../../platform/src/internal.h"
#include "platform/folders.h"
#include "temp_roots.h"

namespace
{

TEST(Folders, OnlyMountsThatAPlayerKnowsAreShown)
{
    std::istringstream table("/dev/sda2 / ext4 rw 0 0\n"
                             "/dev/sda1 /boot/efi vfat rw 0 0\n"
                             "proc /proc proc rw 0 0\n"
                             "/dev/loop3 /snap/core/1 squashfs ro 0 0\n"
                             "/dev/loop4 /opt/image squashfs ro 0 0\n"
                             "/dev/sda3 /var/lib/data ext4 rw 0 0\n"
                             "gvfs /run/user/1000/gvfs fuse.gvfsd-fuse rw 0 0\n"
                             "/dev/sdb1 /media/fred/My\\040Stick\\134\\011x vfat rw 0 0\n"
                             "image /mnt fuse.iso9660 ro 0 0\n"
                             "/dev/sdc1 /media/fred/.hidden vfat rw 0 0\n"
                             "server:/x /srv/charts nfs4 rw 0 0\n"
                             "/dev/sdd1 /data ext4 rw 0 0\n"
                             "/dev/sdd1 /data ext4 rw 0 0\n"
                             "/dev/sde1 /mediator ext4 rw 0 0\n"
                             "tmpfs /scratch tmpfs rw 0 0\n"
                             "\n"
                             "broken\\04 line\n");
    EXPECT_EQ(PlatformKnownMounts(table), (std::vector<std::string>{"/data", "/media/fred/My Stick\\\tx",
                                                                    "/mediator", "/mnt", "/srv/charts"}));
}

TEST(Folders, AFolderShowsWhatAPlayerCanOpen)
{
    TempRoots roots;
    for (const char* name : {"a.exp", "\xe6\xb5\xb7/x", "sub/y", ".hidden", "back\\slash"})
        roots.Put(std::string("user/") + name);
    const std::string user = (roots.folder / "user").string();
    ASSERT_EQ(mkfifo((user + "/pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("sub", user + "/link");
    std::filesystem::create_symlink("a.exp", user + "/link.exp");
    std::filesystem::create_symlink("nowhere", user + "/broken");
    std::filesystem::create_symlink("loop", user + "/loop");

    std::vector<PlatformFolderEntry> found;
    ASSERT_EQ(PlatformListFolder(user, &found), 0);
    std::vector<std::string> names;
    for (const PlatformFolderEntry& entry : found)
        names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    std::sort(names.begin(), names.end());
    const std::vector<std::string> all = {"a.exp", "link.exp", "link/", "sub/", "\xe6\xb5\xb7/"};
    EXPECT_EQ(names, all);

    EXPECT_LT(PlatformListFolder(user + "/a.exp", &found), 0);
    EXPECT_LT(PlatformListFolder(user + "/gone", &found), 0);
    EXPECT_EQ(found.size(), all.size()) << "a failure writes nothing";
    EXPECT_EQ(PlatformKindOf(user + "/pipe"), PlatformPathKind::Other);
    EXPECT_EQ(PlatformKindOf(user + "/loop"), PlatformPathKind::None);
}

TEST(Folders, APathGoesToTheDiskAndBack)
{
    TempRoots roots;
    roots.Put("game/Gr\xc3\xbc\xc3\x9f"
              "e/\xe6\xb5\xb7/x.exp");
    const std::string game = (roots.folder / "game").string();
    const std::string folder = game + "/Gr\xc3\xbc\xc3\x9f"
                                      "e/\xe6\xb5\xb7";
    const std::string shown = game + "/Gr\xfc\xdf"
                                     "e/\xe6\xb5\xb7";
    EXPECT_EQ(PlatformFromFilePath(folder), shown);
    EXPECT_EQ(PlatformFullPath(shown.c_str()), folder);
    EXPECT_EQ(PlatformFullPath(".\\GR\xdc\xdf"
                               "E"),
              game + "/Gr\xc3\xbc\xc3\x9f"
                     "e");
    EXPECT_EQ(PlatformFullPath((game + "//x/..").c_str()), game);
    EXPECT_EQ(PlatformFullPath(".."), "");
    EXPECT_EQ(PlatformFullPath("gone"), "");
    EXPECT_EQ(PlatformFullPath(nullptr), "");
    EXPECT_EQ(PlatformFullPath("/"), "/");
    EXPECT_EQ(PlatformFromFilePath("/"), "/");
    EXPECT_EQ(PlatformAbsolutePath("a/./b/"), std::filesystem::current_path().string() + "/a/b");
}

} // namespace
