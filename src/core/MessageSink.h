#pragma once
// Where the toolkit-free library sends the texts that the user must see. The GUI
// shows them as message boxes; the command line prints them; tests record them.

#include <string>

namespace rq {

enum class MessageIcon {
    None,        // a plain box
    Stop,        // error box (stop icon)
    Information, // information icon
    Question,
};

class MessageSink {
public:
    virtual ~MessageSink() = default;
    // A box with one OK button.
    virtual void showMessage(const std::string& text, MessageIcon icon) = 0;
    // A box with OK and Cancel; true for OK.
    virtual bool askOkCancel(const std::string& text) = 0;
    // A box with Yes and No; true for Yes.
    virtual bool askYesNo(const std::string& text, MessageIcon icon, bool defaultNo) = 0;
};

// Drops every message and answers every question with its default choice.
class SilentSink : public MessageSink {
public:
    void showMessage(const std::string&, MessageIcon) override {}
    bool askOkCancel(const std::string&) override { return true; }
    bool askYesNo(const std::string&, MessageIcon, bool defaultNo) override { return !defaultNo; }
};

} // namespace rq
