#pragma once
// A message sink that keeps what it is shown, to be handed on later: a reader that
// runs beside others (or off the GUI thread) shows its messages here, and the
// caller replays them to the real sink in the order a one-by-one run would show
// them.

#include "core/MessageSink.h"

#include <string>
#include <utility>
#include <vector>

namespace rq {

class RecordingSink : public MessageSink {
public:
    struct Message {
        std::string text;
        MessageIcon icon;
    };

    void showMessage(const std::string& text, MessageIcon icon) override {
        messages_.push_back({text, icon});
    }
    // Nobody is there to answer: a question takes its default answer and is
    // noted, so that the caller can redo the work with a sink that can ask.
    bool askOkCancel(const std::string&) override {
        asked_ = true;
        return true;
    }
    bool askYesNo(const std::string&, MessageIcon, bool defaultNo) override {
        asked_ = true;
        return !defaultNo;
    }

    const std::vector<Message>& messages() const { return messages_; }
    bool askedQuestion() const { return asked_; }

    // Shows every kept message on `sink`, in the order they came.
    void replayTo(MessageSink& sink) const {
        for (const Message& m : messages_)
            sink.showMessage(m.text, m.icon);
    }
    void clear() {
        messages_.clear();
        asked_ = false;
    }

private:
    std::vector<Message> messages_;
    bool asked_ = false;
};

} // namespace rq
