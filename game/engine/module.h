#pragma once
// A dynamic library that makes entities.

#include <memory>
#include <string>

#include "entity.h"

/// Loaded while it lives; every entity of it must be gone before.
class CModule
{
  public:
    /// `name` is a file beside the program (a "/" or "\" in it is refused). Null, and the reason in `error`,
    /// when it can't be loaded or doesn't export CreateEntity.
    static std::unique_ptr<CModule> Load(const std::string& name, std::string& error);
    ~CModule();
    CModule(const CModule&) = delete;
    CModule& operator=(const CModule&) = delete;

    /// Null when the module makes none.
    std::unique_ptr<Entity> CreateEntity(const std::string& name) const;

  private:
    using CreateFunction = Entity* (*)(char*);
    CModule(void* handle, CreateFunction create) : m_pHandle(handle), m_pCreate(create) {}
    void* m_pHandle;
    CreateFunction m_pCreate;
};

/// The folder of the running program, with a trailing slash.
std::string ProgramFolder();
