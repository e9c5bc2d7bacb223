// The sizes of what users make or derive from on Windows: a change breaks what they have built.
//
// To be compiled alone, with the versions of the system's records that the project is built with.
#include "app/CAppState.h"
#include "app/CLimitSingleExecute.h"
#include "app/CLimitSingleInstance.h"
#include "app/CMXWaitCursor.h"
#include "app/CPrecisionTimer.h"
#include "app/TraceProvider.h"
#include "log/CConsoleOutMXLog.h"
#include "log/CDummyMXLog.h"
#include "log/CHTMLMXLog.h"
#include "log/CMXLog.h"
#include "log/CMXTestInfo.h"
#include "log/CRawTextMXLog.h"
#include "log/QNHelper.h"
#include "messages/CDevManager.h"
#include "messages/CDeviceInterfaceRegistrar.h"
#include "messages/CMessageFilterSetter.h"
#include "messages/CWMDeviceChange.h"
#include "messages/CWMLButtonDown.h"
#include "messages/CWindowsMessage.h"
#include "output/CCustomMessageHandler.h"
#include "output/CExceptionSwitch.h"
#include "output/CFormatInfo.h"
#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "prompts/CMFCDialogMXUserInput.h"
#include "prompts/CMXUserInput.h"
#include "settings/CDUTInfo.h"
#include "settings/CIniArgs.h"
#include "siblings/Keelbase.h"
#include "siblings/Promptline.h"
#include "siblings/QuillonLog.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

static_assert(sizeof(CAppState) == 192);
static_assert(sizeof(CLimitSingleExecute) == 16);
static_assert(sizeof(CLimitSingleInstance) == 16);
static_assert(sizeof(CMXWaitCursor) == 1);
static_assert(sizeof(CPrecisionTimer) == 32);
static_assert(sizeof(TraceProvider) == 1);
static_assert(sizeof(CConsoleOutMXLog) == 152);
static_assert(sizeof(CDummyMXLog) == 144);
static_assert(sizeof(CHTMLMXLog) == 136);
static_assert(sizeof(CMXLog) == 128);
static_assert(sizeof(CMXTestInfo) == 64);
static_assert(sizeof(CRawTextMXLog) == 144);
static_assert(sizeof(QNHelper) == 32);
static_assert(sizeof(CDevManager) == 24);
static_assert(sizeof(CDeviceInterfaceRegistrar) == 8);
static_assert(sizeof(CMessageFilterSetter) == 1);
static_assert(sizeof(CWMDeviceChange) == 56);
static_assert(sizeof(CWMLButtonDown) == 48);
static_assert(sizeof(CWindowsMessage) == 48);
static_assert(sizeof(CCustomMessageHandler) == 16);
static_assert(sizeof(CExceptionSwitch) == 1);
static_assert(sizeof(CFormatInfo) == 104);
static_assert(sizeof(COutputBuffer) == 16);
static_assert(sizeof(CUIUpdate) == 144);
static_assert(sizeof(CMFCDialogMXUserInput) == 112);
static_assert(sizeof(CMXUserInput) == 56);
static_assert(sizeof(CDUTInfo) == 128);
static_assert(sizeof(CIniArgs) == 104);
static_assert(sizeof(CSafeString) == 8);
static_assert(sizeof(CSimpleBuffer) == 16);
static_assert(sizeof(CMemWrapper) == 1);
static_assert(sizeof(CQNException) == 16);
static_assert(sizeof(CQNRunTimeException) == 16);
static_assert(sizeof(CQNDOMDocException) == 16);
static_assert(sizeof(CMXGuiEvent) == 16);
static_assert(sizeof(CHelperDialogState) == 32);
static_assert(sizeof(CPromptListener) == 8);
static_assert(sizeof(CPromptService) == 8);
static_assert(sizeof(CTestSuiteListener) == 8);
static_assert(sizeof(CTestLog) == 40);
static_assert(sizeof(CTestSuiteLog) == 16);
static_assert(sizeof(CComSessionMgr) == 1);
static_assert(sizeof(CDOMDoc) == 64);
