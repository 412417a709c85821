// "Alarm Configuration" without a display: the buffer size's check, the only
// command the alarm editor has so far, and its step through undo and redo compared
// by the bytes of alarm.xml.

#include "sections/alarm/AlarmEditor.h"
#include "support/SectionTestKit.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

using namespace rq;

namespace {

struct ScriptedDialog : AlarmDialogHost {
    std::optional<std::string> answer; // nothing = Cancel
    std::string opened;
    bool configDialog(AlarmConfigForm& f) override {
        opened = f.bufferSize;
        if (!answer)
            return false;
        f.bufferSize = *answer;
        return true;
    }
};

std::string bytes(const AlarmSection& s) {
    std::string out;
    s.write(out);
    return out;
}

} // namespace

TEST(AlarmConfigForm, TakesWholeNumbersFromOne) {
    for (const char* good : {"1", "500", "0010"})
        EXPECT_EQ(validateAlarmConfigForm({good}), std::nullopt) << good;
    for (const char* bad : {"", "0", "000", "-5", "1.5", " 5", "1e3", "5<"})
        EXPECT_EQ(validateAlarmConfigForm({bad}), std::string(alarmtext::kBadBufferSize)) << bad;
}

TEST(AlarmEditor, OnlyTheConfigurationIsBuiltAndItIsOneStep) {
    const char* src = std::getenv("RQ_SOURCE_DIR");
    AlarmSection s;
    ASSERT_TRUE(
        rqtest::readSection(s, std::string(src ? src : ".") + "/data/examples/demo/alarm.xml"));
    ScriptedDialog dialog;
    UndoHistory history;
    AlarmSectionEditor editor(s, dialog, history);
    EXPECT_EQ(editor.treeMenu(nullptr), 143);
    for (int unbuilt : {32854, 32855, 32857, 32858, 32859, 32909})
        EXPECT_FALSE(editor.handles(unbuilt)) << unbuilt;
    EXPECT_TRUE(editor.handles(32856));

    const std::string before = bytes(s);
    EXPECT_FALSE(editor.run(32856, {}).changed); // Cancel
    EXPECT_EQ(dialog.opened, "500");
    dialog.answer = "500";
    EXPECT_FALSE(editor.run(32856, {}).changed); // unchanged
    dialog.answer = "2000";
    EXPECT_FALSE(editor.run(32854, {}).changed);
    EXPECT_EQ(history.count(), 0u);
    EXPECT_TRUE(editor.run(32856, {}).changed);
    EXPECT_EQ(history.undoText(), "Undo Alarm Configuration");
    const std::string after = bytes(s);
    EXPECT_NE(after.find("\t<alarmlog size=\"2000\" />\r\n"), std::string::npos);
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(bytes(s), before);
    ASSERT_TRUE(history.redo());
    EXPECT_EQ(bytes(s), after);
}
