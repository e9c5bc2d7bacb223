// Replies out of typed lines.
#include "siblings/promptline/Reply.h"

#include <algorithm>
#include <cwctype>

#include "siblings/Keelbase.h"

namespace {

constexpr std::uint64_t Largest = 0xFFFFFFFF;

int DigitOf(wchar_t letter) {
    if (letter >= L'0' && letter <= L'9') return letter - L'0';
    if (letter >= L'a' && letter <= L'f') return letter - L'a' + 10;
    if (letter >= L'A' && letter <= L'F') return letter - L'A' + 10;
    return 99;
}

std::optional<Reply> Refuse(std::wstring & problem, std::wstring const & text) {
    problem = text;
    return std::nullopt;
}

Reply AtPlace(std::uint32_t place) { return {.places = {place}}; }

// "y" for "Yes", but not where both labels begin alike.
bool IsInitial(std::wstring const & line, std::wstring const & label, std::wstring const & other) {
    if (line.size() != 1 || label.empty() || other.empty()) return false;
    std::wstring const initial = label.substr(0, 1);
    return EqualInAnyCase(line, initial) && !EqualInAnyCase(initial, other.substr(0, 1));
}

std::optional<Reply>
ReadChoice(Question const & question, std::wstring const & line, std::wstring & problem) {
    if (line == L"1" || EqualInAnyCase(line, question.first)
        || IsInitial(line, question.first, question.second))
        return Reply{.affirmed = true};
    if (line == L"2" || EqualInAnyCase(line, question.second)
        || IsInitial(line, question.second, question.first))
        return Reply{.affirmed = false};
    return Refuse(
        problem, L"Type 1 for " + question.first + L" or 2 for " + question.second + L".");
}

std::optional<Reply>
ReadNumberReply(Question const & question, std::wstring const & line, std::wstring & problem) {
    auto const number = ReadNumber(line.empty() ? question.preset : line, question.hexadecimal);
    if (!number)
        return Refuse(
            problem, question.hexadecimal ? L"Type a hexadecimal number from 0 to FFFFFFFF."
                                          : L"Type a number from 0 to 4294967295.");
    return Reply{.number = *number};
}

// The place that the operator's number names.
std::optional<std::uint32_t> PlaceOf(Question const & question, std::wstring const & word) {
    auto const number = ReadNumber(word, false);
    if (!number || *number == 0 || *number > question.list.size()) return std::nullopt;
    return *number - 1;
}

std::optional<Reply>
ReadPlace(Question const & question, std::wstring const & line, std::wstring & problem) {
    if (line.empty() && question.presetPlace) return AtPlace(*question.presetPlace);
    if (auto const place = PlaceOf(question, line)) return AtPlace(*place);
    bool const hasWayOut = question.kind == QuestionKind::OneOfListOrOut;
    if (hasWayOut && line == L"0") return Reply{.affirmed = false};
    return Refuse(
        problem, L"Type a number from " + std::wstring(hasWayOut ? L"0" : L"1") + L" to "
                     + std::to_wstring(question.list.size()) + L".");
}

std::vector<std::wstring> WordsOf(std::wstring const & line) {
    std::vector<std::wstring> words(1);
    for (wchar_t const letter : line)
        if (letter == L',' || std::iswspace(static_cast<wint_t>(letter)) != 0)
            words.emplace_back();
        else
            words.back() += letter;
    std::erase(words, L"");
    return words;
}

std::optional<Reply>
ReadPlaces(Question const & question, std::wstring const & line, std::wstring & problem) {
    Reply reply;
    for (auto const & word : WordsOf(line)) {
        auto const place = PlaceOf(question, word);
        if (!place)
            return Refuse(
                problem, L"Type numbers from 1 to " + std::to_wstring(question.list.size())
                             + L", with blanks between them.");
        reply.places.push_back(*place);
    }
    std::sort(reply.places.begin(), reply.places.end());
    auto const end = std::unique(reply.places.begin(), reply.places.end());
    reply.places.erase(end, reply.places.end());
    return reply;
}

std::string Joined(std::vector<std::wstring> const & texts) {
    std::wstring joined;
    for (auto const & text : texts)
        joined += (joined.empty() ? L"" : L"; ") + text;
    return *Utf16ToUtf8(joined);
}

std::string EntriesOf(Question const & question, Reply const & reply) {
    std::vector<std::wstring> entries;
    for (std::uint32_t const place : reply.places)
        entries.push_back(question.list.at(place));
    return Joined(entries);
}

std::string NumberText(Question const & question, Reply const & reply) {
    return static_cast<char const *>(
        CBasicFormattedString<char>(question.hexadecimal ? "0x%X" : "%u", reply.number));
}

} // namespace

std::wstring Trimmed(std::wstring const & text) {
    auto const isBlank = [](wchar_t letter) {
        return std::iswspace(static_cast<wint_t>(letter)) != 0;
    };
    auto const from = std::find_if_not(text.begin(), text.end(), isBlank);
    auto const to = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return from < to ? std::wstring(from, to) : std::wstring();
}

bool EqualInAnyCase(std::wstring const & a, std::wstring const & b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](wchar_t x, wchar_t y) {
        return std::towlower(static_cast<wint_t>(x)) == std::towlower(static_cast<wint_t>(y));
    });
}

std::optional<std::uint32_t> ReadNumber(std::wstring const & text, bool hexadecimal) {
    std::wstring digits = Trimmed(text);
    bool const isMarked = digits.size() > 2 && digits[0] == L'0' && (digits[1] | 0x20) == L'x';
    if (isMarked) digits.erase(0, 2);
    int const base = hexadecimal || isMarked ? 16 : 10;
    if (digits.empty()) return std::nullopt;
    std::uint64_t number = 0;
    for (wchar_t const letter : digits) {
        int const digit = DigitOf(letter);
        if (digit >= base) return std::nullopt;
        number = number * static_cast<unsigned>(base) + static_cast<unsigned>(digit);
        if (number > Largest) return std::nullopt;
    }
    return static_cast<std::uint32_t>(number);
}

std::optional<std::uint32_t>
FindEntry(std::vector<std::wstring> const & list, std::wstring const & text) {
    auto const found = std::find(list.begin(), list.end(), text);
    if (found == list.end()) return std::nullopt;
    return static_cast<std::uint32_t>(found - list.begin());
}

std::optional<Reply>
ReadReply(Question const & question, std::wstring const & line, std::wstring & problem) {
    std::wstring const word = Trimmed(line);
    switch (question.kind) {
    case QuestionKind::Information:
        return Reply{};
    case QuestionKind::Choice:
        return ReadChoice(question, word, problem);
    case QuestionKind::Number:
        return ReadNumberReply(question, word, problem);
    case QuestionKind::Text:
        return Reply{.texts = {line.empty() ? question.preset : line}};
    case QuestionKind::OneOfList:
    case QuestionKind::OneOfListOrOut:
        return ReadPlace(question, word, problem);
    case QuestionKind::SeveralOfList:
        return ReadPlaces(question, word, problem);
    case QuestionKind::OneFile:
    case QuestionKind::SeveralFiles:
        if (word.empty()) return Reply{.affirmed = false};
        return Reply{.texts = {word}};
    default:
        return Refuse(problem, L"Nothing is asked.");
    }
}

std::string TextOf(Question const & question, Reply const & reply) {
    switch (question.kind) {
    case QuestionKind::Information:
        return *Utf16ToUtf8(question.first);
    case QuestionKind::Choice:
        return *Utf16ToUtf8(reply.affirmed ? question.first : question.second);
    case QuestionKind::Number:
        return NumberText(question, reply);
    case QuestionKind::OneOfListOrOut:
        if (!reply.affirmed) return *Utf16ToUtf8(question.second);
        return EntriesOf(question, reply);
    case QuestionKind::OneOfList:
    case QuestionKind::SeveralOfList:
        return EntriesOf(question, reply);
    default:
        return Joined(reply.texts);
    }
}
