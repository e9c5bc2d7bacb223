// Starting and ending a test suite, the lines that tell what it was made with, the names of levels.
//
// A host calls, in this order: CAppState::InitAppState and its setters, SetIniArgs among them;
// CUIUpdate::GetUIUpdate(window) and SetOutputBuffer, so that a failed start has a place to be
// shown; CAppState::TestSuiteLog; Common_InitTestSuite; the tests; Common_EndTestSuite;
// CUIUpdate::FreeUIUpdate, CLimitSingleExecute::FreeSingleExecute, CAppState::CleanupAppState.
// Nothing checks this order.
//
// All of it runs on the caller's thread and takes no lock. While a suite starts it rings the host's
// window and waits for it: the window's thread keeps pumping, unless it is itself the caller.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "app/Export.h"
#include "log/TestStatus.h"

class CMXLog;
class CMXUserInput;
class COutputBuffer;

// Makes a suite's log and prompt object, both the caller's until Common_EndTestSuite, to be called
// whatever the result. TS_SUCCESS, or TS_ABORTED when one of them could not be made, or after an
// exception, the operator's abort among them; what was made is set all the same, and the reason is
// reported to `log`, else to the global log, else to CUIUpdate's output buffer. std::bad_alloc
// alone leaves as an exception.
//
// `log`, `userInput`: outputs, null where nothing was made. `dialogHeader`: null for "Quillon".
// `outputBuffer`: what TS_LOG_HTML writes into; emptied. `displayVersions`: system and program
// files are logged too. `logFileName`: the file that TS_LOG_CONSOLE appends to, may be null.
// `makeGlobal`: the log becomes CAppState::Log(). An earlier global log is forgotten, not deleted.
MORVEX_API TS_STATUS Common_InitTestSuite(
    CMXLog *& log, tagTS_LOG_TYPE logType, CMXUserInput *& userInput, char const * dialogHeader,
    COutputBuffer * const outputBuffer, bool displayVersions, char * logFileName, bool makeGlobal);

// As above, with a log of the host's own kind, for entries that have to go elsewhere. `given`:
// never null; `log` is the same object, and from then on the caller's as above.
MORVEX_API TS_STATUS Common_InitTestSuiteWithLog(
    CMXLog *& log, std::unique_ptr<CMXLog> given, CMXUserInput *& userInput,
    char const * dialogHeader, bool displayVersions, bool makeGlobal);

// Deletes the prompt object and the global log that CAppState holds, for a suite whose log was made
// global. TS_SUCCESS.
MORVEX_API TS_STATUS Common_EndTestSuite();

// Deletes these two and sets them to null; in the place of a null log the global log. CAppState
// forgets both. TS_SUCCESS.
MORVEX_API TS_STATUS Common_EndTestSuite(CMXLog *& log, CMXUserInput *& userInput);

// Deletes the prompt object alone and sets it to null; CAppState forgets its own. TS_SUCCESS.
MORVEX_API TS_STATUS Common_CleanupUserInput(CMXUserInput *& userInput);

// Never null. The levels 6 to 254 bear the name of 5.
MORVEX_API std::unique_ptr<std::string, std::function<void(std::string *)>>
GetLogLevelName(eQNLogVerbosity level);

// Logs the version of each program file. The log, CUIUpdate's output buffer and the suite record
// must be there. Throws as the next.
MORVEX_API void Common_DisplayEngineFileVersions(CMXLog * log);

// Logs a file's version as four numbers and files it in the suite record, or logs a warning that it
// has none. `log` and the suite record must be there; a bare name is found as platform/README.md
// tells. Throws CQNRunTimeException for an armed abort of the operator.
MORVEX_API void Common_DisplayFileVersion(char const * file, CMXLog * log);
MORVEX_API void Common_DisplayFileVersion(std::string const & file, CMXLog * log);

// Logs which system this is and files it in the suite record, which must be there; a system that is
// not supported gets a warning. Null: does nothing.
MORVEX_API void Common_DisplayOSVersionInfo(CMXLog * log);
