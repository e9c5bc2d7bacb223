// The file of answers, read with nlohmann-json.
#include "siblings/promptline/AnswerFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <nlohmann/json.hpp>

#include "siblings/Keelbase.h"
#include "siblings/promptline/Reply.h"

using Json = nlohmann::json;

struct AnswerFile::Entry {
    std::optional<std::string> question;
    Json answer;
    std::uint32_t times = 1;
};

struct AnswerFile::Entries {
    std::vector<Entry> all;
};

namespace {

constexpr std::uint32_t MostTimes = 1'000'000;

std::filesystem::path PathOf(std::string const & file) {
    return std::filesystem::path(std::u8string(file.begin(), file.end()));
}

[[noreturn]] void Fail(std::string const & file, std::string const & what) {
    throw std::runtime_error(
        "the file of answers \"" + file + "\" (QN_PROMPTS) cannot be used: " + what);
}

// Without the name that the reader's library gives the error, in brackets in front.
std::string ReasonOf(Json::exception const & error) {
    std::string const text = error.what();
    auto const name = text.find("] ");
    return "it is no JSON: " + (name == text.npos ? text : text.substr(name + 2));
}

Json ReadJson(std::string const & file) {
    std::ifstream stream(PathOf(file), std::ios::binary);
    // A folder opens like a file, but has nothing to read.
    stream.peek();
    if (stream.bad() || !stream.is_open())
        Fail(file, "it cannot be opened. Name a file that may be read.");
    stream.clear();
    try {
        return Json::parse(stream);
    } catch (Json::exception const & error) {
        Fail(file, ReasonOf(error));
    }
}

bool IsAnswer(Json const & value) {
    if (!value.is_array()) return !value.is_object() && !value.is_number_float();
    return std::all_of(value.begin(), value.end(), [](Json const & part) {
        return part.is_string() || part.is_number_unsigned();
    });
}

bool IsCount(Json const & value) {
    return value.is_number_unsigned() && value.get<std::uint64_t>() >= 1
           && value.get<std::uint64_t>() <= MostTimes;
}

// What is wrong with an entry, or an empty text. A word that nobody reads is a typing error.
std::string ProblemOf(Json const & entry) {
    if (!entry.is_object()) return "is no object";
    for (auto const & item : entry.items())
        if (item.key() != "question" && item.key() != "answer" && item.key() != "times")
            return "has an unknown member \"" + item.key() + '"';
    if (entry.contains("question") && !entry["question"].is_string())
        return "has a question that is no text";
    if (!entry.contains("answer") || !IsAnswer(entry["answer"]))
        return "has no answer: give a text, a number from 0, true, false, null, or a list of texts "
               "and numbers";
    if (entry.contains("times") && !IsCount(entry["times"]))
        return "has \"times\" that is no number from 1 to " + std::to_string(MostTimes);
    return {};
}

std::wstring Wide(Json const & text) { return *Utf8ToUtf16(text.get<std::string>()); }

std::optional<Reply> AcceptInformation(Question const & question, Json const & answer) {
    bool const isWord =
        answer.is_string()
        && (EqualInAnyCase(Wide(answer), L"ok") || EqualInAnyCase(Wide(answer), question.first));
    if (isWord || answer == Json(true)) return Reply{};
    return std::nullopt;
}

std::optional<Reply> AcceptChoice(Question const & question, Json const & answer) {
    if (answer.is_boolean()) return Reply{.affirmed = answer.get<bool>()};
    if (!answer.is_string()) return std::nullopt;
    if (EqualInAnyCase(Wide(answer), question.first)) return Reply{.affirmed = true};
    if (EqualInAnyCase(Wide(answer), question.second)) return Reply{.affirmed = false};
    return std::nullopt;
}

std::optional<Reply> AcceptNumber(Question const & question, Json const & answer) {
    std::optional<std::uint32_t> number;
    if (answer.is_string()) number = ReadNumber(Wide(answer), question.hexadecimal);
    if (answer.is_number_unsigned() && answer.get<std::uint64_t>() <= 0xFFFFFFFF)
        number = answer.get<std::uint32_t>();
    if (!number) return std::nullopt;
    return Reply{.number = *number};
}

std::optional<std::uint32_t> PlaceOf(Question const & question, Json const & part) {
    if (part.is_string()) return FindEntry(question.list, Wide(part));
    if (!part.is_number_unsigned()) return std::nullopt;
    auto const number = part.get<std::uint64_t>();
    if (number == 0 || number > question.list.size()) return std::nullopt;
    return static_cast<std::uint32_t>(number - 1);
}

std::optional<Reply> AcceptPlace(Question const & question, Json const & answer) {
    if (auto const place = PlaceOf(question, answer)) return Reply{.places = {*place}};
    if (question.kind != QuestionKind::OneOfListOrOut) return std::nullopt;
    bool const isOut = answer == Json(false)
                       || (answer.is_string() && EqualInAnyCase(Wide(answer), question.second));
    if (isOut) return Reply{.affirmed = false};
    return std::nullopt;
}

std::optional<Reply> AcceptPlaces(Question const & question, Json const & answer) {
    if (!answer.is_array()) return std::nullopt;
    Reply reply;
    for (Json const & part : answer) {
        auto const place = PlaceOf(question, part);
        if (!place) return std::nullopt;
        reply.places.push_back(*place);
    }
    std::sort(reply.places.begin(), reply.places.end());
    auto const end = std::unique(reply.places.begin(), reply.places.end());
    reply.places.erase(end, reply.places.end());
    return reply;
}

bool IsUsable(Question const & question, std::string const & path) {
    std::error_code ignored;
    if (path.empty()) return false;
    return !question.mustExist || std::filesystem::is_regular_file(PathOf(path), ignored);
}

std::optional<Reply> AcceptFiles(Question const & question, Json const & answer) {
    if (answer == Json(false)) return Reply{.affirmed = false};
    Json const files = answer.is_array() ? answer : Json::array({answer});
    bool const isOne = question.kind == QuestionKind::OneFile;
    if (files.empty() || (isOne && files.size() != 1)) return std::nullopt;
    Reply reply;
    for (Json const & file : files) {
        if (!file.is_string() || !IsUsable(question, file.get<std::string>())) return std::nullopt;
        reply.texts.push_back(Wide(file));
    }
    return reply;
}

std::optional<Reply> Accept(Question const & question, Json const & answer) {
    switch (question.kind) {
    case QuestionKind::Information:
        return AcceptInformation(question, answer);
    case QuestionKind::Choice:
        return AcceptChoice(question, answer);
    case QuestionKind::Number:
        return AcceptNumber(question, answer);
    case QuestionKind::Text:
        if (!answer.is_string()) return std::nullopt;
        return Reply{.texts = {Wide(answer)}};
    case QuestionKind::OneOfList:
    case QuestionKind::OneOfListOrOut:
        return AcceptPlace(question, answer);
    case QuestionKind::SeveralOfList:
        return AcceptPlaces(question, answer);
    case QuestionKind::OneFile:
    case QuestionKind::SeveralFiles:
        return AcceptFiles(question, answer);
    default:
        return std::nullopt;
    }
}

} // namespace

AnswerFile::AnswerFile(std::string const & file)
    : m_File(file), m_Entries(std::make_unique<Entries>()) {
    Json const root = ReadJson(file);
    bool const isFormat = root.is_object() && root.size() == 1 && root.contains("answers")
                          && root["answers"].is_array();
    if (!isFormat) Fail(file, "it must hold one object with the one member \"answers\", a list");
    for (Json const & entry : root["answers"]) {
        std::string const problem = ProblemOf(entry);
        if (!problem.empty())
            Fail(file, "entry " + std::to_string(m_Entries->all.size() + 1) + " " + problem);
        Entry & added = m_Entries->all.emplace_back();
        if (entry.contains("question")) added.question = entry["question"].get<std::string>();
        added.answer = entry["answer"];
        if (entry.contains("times")) added.times = entry["times"].get<std::uint32_t>();
    }
}

AnswerFile::~AnswerFile() = default;

// A question that the file names is answered by its entries alone, also when they are used up: an
// answer that is meant for another question is worse than none.
AnswerFile::Entry * AnswerFile::Find(std::string const & name) {
    Entry * next = nullptr;
    bool isNamed = false;
    for (Entry & entry : m_Entries->all) {
        if (entry.question == name) {
            isNamed = true;
            if (entry.times > 0) return &entry;
        }
        if (!entry.question && entry.times > 0 && next == nullptr) next = &entry;
    }
    return isNamed ? nullptr : next;
}

std::optional<Reply> AnswerFile::Take(Question const & question, std::string & problem) {
    Entry * const entry = Find(*Utf16ToUtf8(question.Name()));
    if (entry == nullptr) {
        problem = "\"" + m_File + "\" has no answer left for it";
        return std::nullopt;
    }
    --entry->times;
    auto const reply = Accept(question, entry->answer);
    if (!reply && entry->answer.is_null())
        problem = "\"" + m_File + "\" leaves it unanswered";
    else if (!reply)
        problem = "the answer " + entry->answer.dump() + " in \"" + m_File + "\" does not fit it";
    return reply;
}
