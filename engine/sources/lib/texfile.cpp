#include "lib/texfile.h"

#include "platform/files.h"

CTexFile::~CTexFile() = default;

bool CTexFile::Load()
{
    return false;
}

std::unique_ptr<CTexFile> CTexFile::Clone() const
{
    return nullptr;
}

bool CTexFile::Exists() const
{
    return !PlatformResolveRead(m_sName.c_str()).empty();
}
