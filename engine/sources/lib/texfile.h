#pragma once
// A file with one texture, the base of its formats. Whoever uses it sets the members.

#include <memory>
#include <string>

#include "lib/teximage.h"

class CTexFile
{
  public:
    CTexFile() = default;
    virtual ~CTexFile();
    CTexFile(CTexFile&&) = default;
    CTexFile& operator=(CTexFile&&) = default;

    /// Reads one level into m_Image. False here, where no format is known.
    virtual bool Load();
    /// A copy whose picture shares its pixels with this one's: what is done to them shows in both. Null here.
    virtual std::unique_ptr<CTexFile> Clone() const;
    /// True when the name leads to a file or a folder.
    bool Exists() const;

    std::string m_sName;
    int m_nWidth = 0; ///< of the first level, in pixels
    int m_nHeight = 0;
    int m_nLevel = 0;   ///< the level to load, from 0
    int m_nCount16 = 0; ///< levels in the file
    int m_nCount8 = 0;
    int m_nSpare = 0;
    bool m_bSpare = false;
    bool m_b16Bit = true; ///< which chain to load
    CTexImage m_Image;

  protected:
    /// For Clone.
    CTexFile(const CTexFile&) = default;
    CTexFile& operator=(const CTexFile&) = default;
};
