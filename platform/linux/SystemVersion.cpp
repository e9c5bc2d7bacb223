// The system's version and the user's language.
#include <cstdlib>
#include <string_view>

#include "platform/Version.h"

namespace {

struct Language {
    std::string_view locale;
    LANGID id;
};

// A language's first line stands for its other territories too.
constexpr Language Languages[] = {
    {"ar_SA", 0x0401}, {"bg_BG", 0x0402}, {"ca_ES", 0x0403}, {"cs_CZ", 0x0405}, {"da_DK", 0x0406},
    {"de_DE", 0x0407}, {"de_AT", 0x0C07}, {"de_CH", 0x0807}, {"de_LI", 0x1407}, {"de_LU", 0x1007},
    {"el_GR", 0x0408}, {"en_US", 0x0409}, {"en_AU", 0x0C09}, {"en_CA", 0x1009}, {"en_GB", 0x0809},
    {"en_IE", 0x1809}, {"en_IN", 0x4009}, {"en_NZ", 0x1409}, {"en_ZA", 0x1C09}, {"es_ES", 0x0C0A},
    {"es_AR", 0x2C0A}, {"es_CL", 0x340A}, {"es_CO", 0x240A}, {"es_MX", 0x080A}, {"et_EE", 0x0425},
    {"fi_FI", 0x040B}, {"fr_FR", 0x040C}, {"fr_BE", 0x080C}, {"fr_CA", 0x0C0C}, {"fr_CH", 0x100C},
    {"he_IL", 0x040D}, {"hi_IN", 0x0439}, {"hr_HR", 0x041A}, {"hu_HU", 0x040E}, {"id_ID", 0x0421},
    {"is_IS", 0x040F}, {"it_IT", 0x0410}, {"it_CH", 0x0810}, {"ja_JP", 0x0411}, {"ko_KR", 0x0412},
    {"lt_LT", 0x0427}, {"lv_LV", 0x0426}, {"nb_NO", 0x0414}, {"nl_NL", 0x0413}, {"nl_BE", 0x0813},
    {"nn_NO", 0x0814}, {"pl_PL", 0x0415}, {"pt_BR", 0x0416}, {"pt_PT", 0x0816}, {"ro_RO", 0x0418},
    {"ru_RU", 0x0419}, {"sk_SK", 0x041B}, {"sl_SI", 0x0424}, {"sq_AL", 0x041C}, {"sv_SE", 0x041D},
    {"sv_FI", 0x081D}, {"th_TH", 0x041E}, {"tr_TR", 0x041F}, {"uk_UA", 0x0422}, {"vi_VN", 0x042A},
    {"zh_CN", 0x0804}, {"zh_HK", 0x0C04}, {"zh_SG", 0x1004}, {"zh_TW", 0x0404},
};

constexpr LANGID AmericanEnglish = 0x0409;

// As the C library chooses it, without encoding and modifier.
std::string_view LocaleOfMessages() {
    for (char const * const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        char const * const value = std::getenv(name);
        if (value == nullptr || value[0] == '\0') continue;
        std::string_view const locale = value;
        return locale.substr(0, locale.find_first_of(".@"));
    }
    return {};
}

LANGID FirstThatBeginsWith(std::string_view text) {
    for (auto const & [locale, id] : Languages)
        if (locale.starts_with(text)) return id;
    return 0;
}

} // namespace

// 6.2 is what programs see that claim no newer system: it makes them take the system's name, which
// is true here, from the registry.
BOOL GetVersionExA(OSVERSIONINFOA * version) {
    auto & record = *reinterpret_cast<OSVERSIONINFOEXA *>(version);
    if (record.dwOSVersionInfoSize != sizeof record) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    record = {};
    record.dwOSVersionInfoSize = sizeof record;
    record.dwMajorVersion = 6;
    record.dwMinorVersion = 2;
    record.dwPlatformId = VER_PLATFORM_WIN32_NT;
    record.wProductType = VER_NT_WORKSTATION;
    return TRUE;
}

LANGID GetUserDefaultLangID() {
    std::string_view const locale = LocaleOfMessages();
    auto const languageEnd = locale.find('_');
    if (locale.substr(0, languageEnd).size() < 2) return AmericanEnglish;
    if (LANGID const id = FirstThatBeginsWith(locale); id != 0) return id;
    LANGID const id = FirstThatBeginsWith(locale.substr(0, languageEnd));
    return id != 0 ? id : AmericanEnglish;
}
