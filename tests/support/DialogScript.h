#pragma once
// A scripted dialog for the editors' flow tests: each call answers like the real
// dialog does. OK on a form that fails its check shows the message through the
// sink and takes the next scripted form; nothing in the script is Cancel, and so
// is an exhausted script. Records the form each call opened with.

#include "core/MessageSink.h"

#include <deque>
#include <optional>
#include <vector>

namespace rqtest {

template <class Form> struct DialogScript {
    std::deque<std::optional<Form>> script;
    std::vector<Form> opened;

    template <class Check> bool answer(Form& f, rq::MessageSink& sink, Check check) {
        opened.push_back(f);
        while (!script.empty()) {
            std::optional<Form> next = std::move(script.front());
            script.pop_front();
            if (!next)
                return false;
            if (auto message = check(*next)) {
                sink.showMessage(*message, rq::MessageIcon::Stop);
                continue;
            }
            f = std::move(*next);
            return true;
        }
        return false;
    }
};

} // namespace rqtest
