#pragma once

#include <QString>

#include <functional>

class QObject;

// Asks the suite's message box module ("WgtMsgBox") to show a box and hands
// its one answer back. The box lives in that module; the requester keeps only
// the answer callback, bound to a context object so that an answer arriving
// after the requester is gone is dropped.
class CLS_MsgBoxRequest
{
public:
    // QMessageBox::StandardButton values, as the message box module expects them.
    static constexpr int kButtonOk = 0x00000400;
    static constexpr int kButtonCancel = 0x00400000;
    static constexpr int kTypeMessage = 0;
    static constexpr int kTypeInput = 1;

    struct ST_Request
    {
        int iMsgBoxType = kTypeMessage;
        QString qstrTitle;
        QString qstrContent;
        int iButtons = kButtonOk;
        int iDefaultButton = kButtonOk;
    };
    // The pressed button and the typed text (empty for a box without input).
    using AnswerFn = std::function<void(int _iButton, QString& _qstrInput)>;

    CLS_MsgBoxRequest() = delete;

    // False when the message box module is missing (logged) or refused the
    // request; the callback is then never called.
    static bool Show(const ST_Request& _stRequest, QObject* _pContext = nullptr,
                     AnswerFn _fnAnswer = {});
};
