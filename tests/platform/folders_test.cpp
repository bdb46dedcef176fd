// Mount points, what a folder shows, and paths between the program and the disk.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <set>
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
                             "/dev/loop4 /opt/image squashfs ro 0 0\n"
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
    for (const auto& [target, link] :
         {std::pair("sub", "/link"), {"a.exp", "/link.exp"}, {"nowhere", "/broken"}, {"loop", "/loop"}})
        std::filesystem::create_symlink(target, user + link);

    std::vector<PlatformFolderEntry> found;
    ASSERT_EQ(PlatformListFolder(user, &found), 0);
    std::set<std::string> names;
    for (const PlatformFolderEntry& entry : found)
        names.insert(entry.name + (entry.isFolder ? "/" : ""));
    EXPECT_EQ(names, (std::set<std::string>{"a.exp", "link.exp", "link/", "sub/", "\xe6\xb5\xb7/"}));
    EXPECT_LT(PlatformListFolder(user + "/a.exp", &found), 0);
    EXPECT_EQ(found.size(), names.size()) << "a failure writes nothing";
    EXPECT_EQ(PlatformKindOf(user + "/pipe"), PlatformPathKind::Other);
}

TEST(Folders, APathGoesToTheDiskAndBack)
{
    TempRoots roots;
    roots.Put("game/Gr\xc3\xbcn/\xe6\xb5\xb7/x.exp");
    const std::string game = (roots.folder / "game").string();
    const std::string folder = game + "/Gr\xc3\xbcn/\xe6\xb5\xb7";
    const std::string shown = game + "/Gr\xfcn/\xe6\xb5\xb7";
    EXPECT_EQ(PlatformFromFilePath(folder), shown);
    EXPECT_EQ(PlatformFullPath(shown.c_str()), folder);
    EXPECT_EQ(PlatformFullPath(".\\GR\xdcN"), game + "/Gr\xc3\xbcn");
    EXPECT_EQ(PlatformFullPath((game + "//x/..").c_str()), game);
    EXPECT_EQ(PlatformFullPath(".."), "");
    EXPECT_EQ(PlatformFullPath("gone"), "");
    EXPECT_EQ(PlatformFullPath("/"), "/");
    EXPECT_EQ(PlatformFromFilePath("/"), "/");
    EXPECT_EQ(PlatformAbsolutePath("a/./b/"), std::filesystem::current_path().string() + "/a/b");
}

} // namespace
