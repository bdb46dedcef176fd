// The system's locale in the terms of GetLocaleInfoA.

#include <langinfo.h>
#include <locale.h>

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

/// A strftime format in the letters of a date or time picture; fields without one are left out.
std::string ToPicture(const std::string& format)
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
        switch (field) {
        case 'd':
            out += "dd";
            break;
        case 'e':
            out += "d";
            break;
        case 'm':
            out += "MM";
            break;
        case 'b':
            out += "MMM";
            break;
        case 'y':
            out += "yy";
            break;
        case 'Y':
            out += "yyyy";
            break;
        case 'D':
            out += "MM/dd/yy";
            break;
        case 'F':
            out += "yyyy-MM-dd";
            break;
        case 'H':
            out += "HH";
            break;
        case 'k':
            out += "H";
            break;
        case 'I':
            out += "hh";
            break;
        case 'l':
            out += "h";
            break;
        case 'M':
            out += "mm";
            break;
        case 'S':
            out += "ss";
            break;
        case 'p':
            out += "tt";
            break;
        case 'T':
            out += "HH:mm:ss";
            break;
        case 'R':
            out += "HH:mm";
            break;
        case 'r':
            out += "hh:mm:ss tt";
            break;
        default:
            break;
        }
    }
    return out;
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
    take(texts.shortDate, ToPicture(get(D_FMT)));
    take(texts.timeFormat, ToPicture(get(T_FMT)));
    take(texts.am, get(AM_STR));
    take(texts.pm, get(PM_STR));
    return texts;
}

/// What stands behind the first run of equal letters: the separator of a picture.
std::string Separator(const std::string& picture, const char* fallback)
{
    const std::size_t second = picture.find_first_not_of(picture.empty() ? ' ' : picture[0]);
    return second == std::string::npos ? fallback : picture.substr(second, 1);
}

std::string DateOrder(const std::string& picture)
{
    const std::size_t first = picture.find_first_of("dMy");
    const char letter = first == std::string::npos ? 'M' : picture[first];
    return letter == 'd' ? "1" : letter == 'y' ? "2" : "0";
}

} // namespace

std::optional<std::string> PlatformSystemLocaleText(DWORD item)
{
    static const LocaleTexts texts = ReadLocale();
    switch (item) {
    case LOCALE_STHOUSAND:
        return texts.thousand;
    case LOCALE_SDECIMAL:
        return texts.decimal;
    case LOCALE_SDATE:
        return Separator(texts.shortDate, "/");
    case LOCALE_STIME:
        return Separator(texts.timeFormat, ":");
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
        return DateOrder(texts.shortDate);
    default:
        return std::nullopt;
    }
}
