// The system's locale in the terms of GetLocaleInfoA.

#include <langinfo.h>
#include <locale.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <memory>

#include "internal.h"
#include "platform/codepage.h"
#include "platform/system.h"

namespace
{

struct LocaleTexts {
    std::string thousand = ",";
    std::string decimal = ".";
    std::string shortDate = "MM/dd/yy";
    std::string timeFormat = "HH:mm:ss";
    std::string am = "AM";
    std::string pm = "PM";
};

bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string Trimmed(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

/// What stands for a field of a strftime format, empty when the pictures have no such field.
std::string FieldPicture(char field)
{
    static constexpr struct {
        char field;
        const char* picture;
    } PICTURES[] = {
        {'a', "ddd"},      {'A', "dddd"},        {'d', "dd"},   {'e', "d"},  {'m', "MM"},
        {'b', "MMM"},      {'h', "MMM"},         {'B', "MMMM"}, {'y', "yy"}, {'Y', "yyyy"},
        {'D', "MM/dd/yy"}, {'F', "yyyy-MM-dd"},  {'H', "HH"},   {'k', "H"},  {'I', "hh"},
        {'l', "h"},        {'M', "mm"},          {'S', "ss"},   {'p', "tt"}, {'T', "HH:mm:ss"},
        {'R', "HH:mm"},    {'r', "hh:mm:ss tt"},
    };
    const auto* const found = std::find_if(std::begin(PICTURES), std::end(PICTURES),
                                           [field](const auto& known) { return known.field == field; });
    return found == std::end(PICTURES) ? "" : found->picture;
}

LocaleTexts ReadLocale()
{
    LocaleTexts texts;
    const std::unique_ptr<std::remove_pointer_t<locale_t>, decltype(&freelocale)> locale(
        newlocale(LC_ALL_MASK, "", nullptr), &freelocale);
    if (!locale) {
        return texts;
    }
    const bool utf8 = std::string_view(nl_langinfo_l(CODESET, locale.get())) == "UTF-8";
    const auto get = [&](nl_item item) {
        const std::string text = nl_langinfo_l(item, locale.get());
        return utf8 ? PlatformFromUtf8(text) : text;
    };
    const auto take = [](std::string& out, const std::string& text) {
        if (!text.empty()) {
            out = text;
        }
    };
    take(texts.thousand, get(THOUSEP));
    take(texts.decimal, get(RADIXCHAR));
    take(texts.shortDate, PlatformPictureOf(get(D_FMT)));
    take(texts.timeFormat, PlatformPictureOf(get(T_FMT)));
    take(texts.am, get(AM_STR));
    take(texts.pm, get(PM_STR));
    return texts;
}

} // namespace

std::string PlatformPictureOf(const std::string& format)
{
    std::string out;
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%' || i + 1 == format.size()) {
            out += format[i];
            continue;
        }
        char field = format[++i];
        while ((field == 'E' || field == 'O' || field == '-') && i + 1 < format.size()) {
            field = format[++i];
        }
        out += FieldPicture(field);
    }
    return Trimmed(out);
}

std::string PlatformPictureSeparator(const std::string& picture, const char* fallback)
{
    const auto letter = std::find_if(picture.begin(), picture.end(), IsLetter);
    const auto separator = std::find_if_not(letter, picture.end(), IsLetter);
    return separator == picture.end() ? fallback : std::string(1, *separator);
}

std::string PlatformPictureOrder(const std::string& picture)
{
    for (std::size_t begin = 0; begin < picture.size();) {
        const std::size_t end = std::min(picture.find_first_not_of(picture[begin], begin), picture.size());
        const bool weekday = picture[begin] == 'd' && end - begin > 2;
        if (!weekday && std::strchr("dMy", picture[begin])) {
            return picture[begin] == 'd' ? "1" : picture[begin] == 'y' ? "2" : "0";
        }
        begin = end;
    }
    return "0";
}

std::optional<std::string> PlatformSystemLocaleText(DWORD item)
{
    static const LocaleTexts texts = ReadLocale();
    switch (item) {
    case LOCALE_STHOUSAND:
        return texts.thousand;
    case LOCALE_SDECIMAL:
        return texts.decimal;
    case LOCALE_SDATE:
        return PlatformPictureSeparator(texts.shortDate, "/");
    case LOCALE_STIME:
        return PlatformPictureSeparator(texts.timeFormat, ":");
    case LOCALE_SSHORTDATE:
        return texts.shortDate;
    case LOCALE_STIMEFORMAT:
        return texts.timeFormat;
    case LOCALE_S1159:
        return texts.am;
    case LOCALE_S2359:
        return texts.pm;
    case LOCALE_ITIME:
        return texts.timeFormat.find('H') == std::string::npos ? "0" : "1";
    case LOCALE_IDATE:
        return PlatformPictureOrder(texts.shortDate);
    default:
        return std::nullopt;
    }
}
