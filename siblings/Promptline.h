// What the library requires of Promptline: the helper dialogs behind the operator's questions.
//
// The three types are Promptline's own; the library hands pointers to them through.
#pragma once

class CMXGuiEvent;
class CHelperDialogState;
struct WINDOW_ARGS;
