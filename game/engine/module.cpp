#include "engine/module.h"

#include <climits>
#include <dlfcn.h>
#include <unistd.h>

std::string ProgramFolder()
{
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof(path));
    if (length <= 0)
        return "./";
    const std::string program(path, static_cast<std::size_t>(length));
    return program.substr(0, program.rfind('/') + 1);
}

std::unique_ptr<CModule> CModule::Load(const std::string& name, std::string& error)
{
    if (name.find_first_of("/\\") != std::string::npos) {
        error = "a module is named without a folder";
        return nullptr;
    }
    void* handle = dlopen((ProgramFolder() + name).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        error = dlerror();
        return nullptr;
    }
    auto create = reinterpret_cast<CreateFunction>(dlsym(handle, "CreateEntity"));
    if (create == nullptr) {
        error = "it doesn't export CreateEntity";
        dlclose(handle);
        return nullptr;
    }
    return std::unique_ptr<CModule>(new CModule(handle, create));
}

CModule::~CModule()
{
    dlclose(m_pHandle);
}

std::unique_ptr<Entity> CModule::CreateEntity(const std::string& name) const
{
    std::string writable = name;
    return std::unique_ptr<Entity>(m_pCreate(writable.data()));
}
