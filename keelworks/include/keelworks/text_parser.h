#pragma once
// The token reader of every text resource. Its character rules stand in docs/formats.md.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "keelworks/ds_file.h"
#include "keelworks/text_number.h"

/// Reads tokens from the file's position on, and leaves that position behind what it took: a raw read of the
/// file takes the byte behind the parser, and moving the file moves the parser. Doesn't own the file, which
/// must outlive it and may be opened after it was made; one that isn't open, or is null, reads as empty.
///
/// In short: white space and comments (`;` or `//` to the end of the line) separate tokens; a token is a text
/// in double quotes on one line, which has no escapes, or a run of characters up to white space or one of
/// `, { } = " ;`. Every Read and Seek gives false on failure, and GetError then says what was expected. A
/// Read that fails takes nothing but the white space, the comments and the comma in front of what it can't
/// take, and leaves the caller's variables as they were.
///
/// Works in place on a ds_file_buffered. Of any other file it keeps a copy (up to
/// ds_file_buffered::MAX_SIZE).
class CTextParser
{
  public:
    CTextParser(ds_file* file, bool);

    /// Goes on to the next unquoted token equal to `token`, ignoring case, and stands behind it. False at the
    /// end of the file, with no way back.
    bool SeekToToken(const char* token);
    /// Stands behind the next `c` outside comments and, unless `c` is the quote itself, outside quoted texts.
    /// False at the end of the file.
    bool SkipTillChar(char c);
    /// Goes on to the end of the line, whatever stands there; the line end itself is left.
    void SkipLine();
    /// Skips white space and comments and gives the next character, 0 at the end of the file. It is taken
    /// when `take` is set, else left for the next call.
    char SkipSpace(bool take);
    /// One string token into `buffer` with its terminating zero; one comma before it is passed over. False
    /// when there is none, or when it needs more than `size` bytes.
    bool ReadFileName(char* buffer, std::size_t size);
    /// A signed decimal number (or 0x and hexadecimal digits, which set all 32 bits and take no sign; with
    /// `hex` every number is hexadecimal, the 0x being optional) and the character behind it, which must be
    /// `separator` or `end`; `ended` tells that it was `end`. White space and comments may stand before the
    /// number and behind it.
    bool ReadIntElem(char separator, char end, int& out, bool& ended, bool hex = false);
    bool ReadIntElem(char separator, int& out, bool hex = false);
    /// The same for a decimal number with fraction and exponent, the point being '.' in every locale.
    bool ReadFloatElem(char separator, char end, float& out, bool& ended);
    /// Goes on to the token `name` and reads the string behind it, an `=` between them is passed over. With
    /// `fromStart` the search begins at the file's first byte.
    bool ReadNamedVal(const char* name, char* buffer, std::size_t size, bool fromStart);

    /// The line of the token or character read or refused last, counted from 1.
    int GetLine() const;
    /// What the last failed call expected and found, without file and line; empty when none failed.
    const std::string& GetError() const;
    /// "path(line): error" for the debug output, of the last failed call; empty when none failed. Stays when
    /// the file is closed.
    std::string DescribeError() const;

  private:
    void Begin();
    bool End(bool done);
    bool Fail(std::size_t pos, const std::string& expected);
    std::string DescribeFound(std::size_t pos) const;
    unsigned char At(std::size_t pos) const;
    std::size_t LineEnd(std::size_t pos) const;
    std::size_t TokenEnd(std::size_t pos) const;
    std::size_t ClosingQuote(std::size_t pos) const;
    std::size_t QuotedEnd(std::size_t pos) const;
    bool IsComment(std::size_t pos) const;
    void SkipBlank(std::string_view stops = {});
    bool TakeString(char* buffer, std::size_t size);
    bool TakeSeparator(std::string_view allowed, bool& last);
    template <class T>
    bool TakeNumber(const ScannedNumber<T>& number, T& out);
    bool TakeInt(bool hex, std::string_view allowed, int& out, bool& last);
    bool SeekTo(const char* token);
    int LineAt(std::size_t pos) const;

    ds_file* m_pFile;
    ds_file_buffered* m_pBuffered; ///< the same file when it is held in memory, else null
    unsigned m_nGeneration;        ///< of the file that the copy and the line counts belong to
    std::vector<char> m_Copy;      ///< of a file that isn't held in memory
    std::string_view m_Text;       ///< valid within one call
    std::size_t m_nPos = 0;
    std::size_t m_nTokenPos = 0;
    std::string m_strError;
    std::string m_strErrorFile;
    int m_nErrorLine = 0;
    mutable int m_nLine = 1;
    mutable std::vector<std::uint32_t> m_LineCounts; ///< line ends before each block of the text
};
