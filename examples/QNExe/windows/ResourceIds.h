// The numbers of the window's commands, controls and dialogs: whoever drives the window knows them.
//
// The resource compiler reads this file too.
#pragma once

// Commands, of the menu, the keys and the buttons alike.
#define ID_RUN_SETUP 101
#define ID_RUN_START 102
#define ID_RUN_ABORT 103
#define ID_LOG_SAVE 104
#define ID_DEVICE_RECORD 105
#define ID_DEVICE_VIFS 106
#define ID_WINDOW_CLOSE 107

// The window's other controls.
#define ID_LOG_VIEW 201
#define ID_PROGRESS_BAR 202
#define ID_PROGRESS_LABEL 203
#define ID_PROGRESS_TIME 204
#define ID_STATUS_BAR 205
#define ID_SUITE_NAME 206

#define ID_MAIN_MENU 301
#define ID_MAIN_KEYS 302

#define ID_DUT_DIALOG 401
#define ID_DUT_TID 402
#define ID_DUT_TEST_BED 403
#define ID_DUT_ROOM 404
#define ID_DUT_COMMENTS 405
#define ID_DUT_LOAD 406
#define ID_DUT_SAVE 407
#define ID_DUT_CLEAR 408
#define ID_DUT_REPLY 409

#define ID_VIF_DIALOG 501
#define ID_VIF_UFP 502
#define ID_VIF_UFP_BROWSE 503
#define ID_VIF_DFP_LIST 504
#define ID_VIF_DFP_ADD 505
#define ID_VIF_DFP_REMOVE 506
#define ID_VIF_REPLY 507

#define ID_SETUP_DIALOG 601
#define ID_SETUP_SUITE 602
#define ID_SETUP_SUITE_BROWSE 603
#define ID_SETUP_RECORDINGS 604
#define ID_SETUP_RECORDINGS_BROWSE 605
#define ID_SETUP_INTERACTIVE 606
#define ID_SETUP_ONLY_FAILURES 607
#define ID_SETUP_VERSIONS 608
#define ID_SETUP_REPORTS 609
#define ID_SETUP_REPORTS_FOLDER 610
#define ID_SETUP_REPLY 611
