#pragma once
// One modal dialog answered from a script, for the flow tests of the section
// editors: each scripted entry is what the user leaves in the fields before
// pressing OK, or nothing for Cancel. Like the real dialog, an entry that fails the
// dialog's own check shows its message and the next entry is taken; an exhausted
// script is Cancel. Records the form each opening showed.

#include "core/MessageSink.h"

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace rqtest {

template <class Form> struct ScriptedDialog {
    std::deque<std::optional<Form>> script;
    std::vector<Form> opened;

    // `check(form)` is the dialog's validator (std::optional<std::string>).
    template <class Check> bool answer(Form& form, rq::MessageSink& sink, Check check) {
        opened.push_back(form);
        while (!script.empty()) {
            std::optional<Form> next = std::move(script.front());
            script.pop_front();
            if (!next)
                return false;
            if (std::optional<std::string> message = check(*next)) {
                sink.showMessage(*message, rq::MessageIcon::Stop);
                continue;
            }
            form = std::move(*next);
            return true;
        }
        return false;
    }
    bool answer(Form& form, rq::MessageSink& sink) {
        return answer(form, sink, [](const Form&) { return std::optional<std::string>(); });
    }
};

} // namespace rqtest
