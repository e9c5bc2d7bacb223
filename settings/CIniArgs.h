// The program's settings: named sections of text values, and the command line's own table.
//
// Names match in any case; values keep the form in which they came. Nothing here parses a file or
// a command line: the host hands in what it has read. There is no lock: fill the store at start-up
// and read it from one thread at a time.
#pragma once

#include <map>
#include <string>

#include "app/Export.h"

class MORVEX_API CIniArgs {
public:
    CIniArgs();
    CIniArgs(CIniArgs const &);
    CIniArgs & operator=(CIniArgs const &);
    virtual ~CIniArgs();

    // Adds or replaces one value. An earlier value is assigned in place, so a `string *` that
    // GetArg handed out for it stays valid and sees the new text.
    void AddArg(std::string const & section, std::string const & key, std::string const & value);

    // The same in the command line's table, which has no sections.
    void AddCmdLineArg(std::string const & key, std::string const & value);

    // Takes over the product's "CertificationMode" out of the registry as "1" or "0" in the section
    // "Quillon". False: it could not be read, nothing changes, and the registry's last-error pair
    // tells why.
    bool ReloadRegistry();

    // The command line's own text. False: missing, `out` is null. The store keeps the text.
    bool GetCmdLineArg(std::string const & key, std::string *& out);

    // The command line's text whatever the section, or else the section's.
    bool GetCmdLineArg(std::string const & section, std::string const & key, std::string *& out);

    // The stored text itself. False: missing, `out` is null. The store keeps the text.
    bool GetArg(std::string const & section, std::string const & key, std::string *& out);

    // Finds a value and reads it as the type of `out`. False: missing or unreadable, `out`
    // untouched. Reading stops at the first character that does not fit; the command line is not
    // asked.
    //
    // Signed: 0x reads as hexadecimal, a leading 0 as octal, all else as decimal. Beyond 64 bits
    // the value stays at the limit; 0xFFFFFFFFFFFFFFFF reads -1.
    bool GetArg(std::string const & section, std::string const & key, long long & out);

    // Decimal only: "010" is 10 here and 8 above, "0x10" is 0 here and 16 above. A minus sign
    // wraps: "-1" is 0xFFFFFFFFFFFFFFFF.
    bool GetArg(std::string const & section, std::string const & key, unsigned long long & out);

    // A decimal number, which is true unless it is 0; or one of "yes", "true", "y", "t" and the
    // empty text; or one of "no", "false", "n", "f". Words match in lower case only.
    bool GetArg(std::string const & section, std::string const & key, bool & out);

    // The signed read, cut to its low bits without a word.
    bool GetArg(std::string const & section, std::string const & key, int & out);
    bool GetArg(std::string const & section, std::string const & key, unsigned int & out);
    bool GetArg(std::string const & section, std::string const & key, short & out);
    bool GetArg(std::string const & section, std::string const & key, unsigned short & out);
    bool GetArg(std::string const & section, std::string const & key, signed char & out);
    bool GetArg(std::string const & section, std::string const & key, unsigned char & out);

protected:
    using Values = std::map<std::string, std::string>;

    // Lower-case A to Z in place, whatever the locale. A null pointer is left alone.
    static void toLower(std::string & text);
    static void toLower(char * text);
    static void toLower(std::wstring & text);
    static void toLower(wchar_t * text);

    // All names in lower case.
    std::map<std::string, Values> m_Sections;
    Values m_CmdLineArgs;

private:
    std::string * Find(std::string const & section, std::string const & key);

    template <typename Number>
    bool GetLowBits(std::string const & section, std::string const & key, Number & out);
};
