// The redundancy editor without a display: the form to and from the section, the
// storable-value check, and the command with a scripted dialog through undo and
// redo, compared by the bytes of redundancy.xml.

#include "sections/redundancy/RedundancyEditor.h"
#include "core/StorableValue.h"
#include "core/ValueChecks.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

#include <optional>

using namespace rq;

namespace {

// Answers with the scripted form (nothing = Cancel); records what it opened with.
struct ScriptedDialog : RedundancyDialogHost {
    std::optional<RedundancyForm> answer;
    std::optional<RedundancyForm> opened;
    bool configDialog(RedundancyForm& f) override {
        opened = f;
        if (!answer)
            return false;
        f = *answer;
        return true;
    }
};

std::string bytes(const RedundancySection& s) {
    std::string out;
    s.write(out);
    return out;
}

RedundancySection fromFile() {
    RedundancySection s;
    RedundancyConfig& c = s.config();
    c.type = "slave";
    c.linkMasterIp = {"10.0.0.1", "10.0.1.1", "10.0.2.1", "10.0.3.1"};
    c.linkSlaveIp = {"10.0.0.2", "10.0.1.2", "10.0.2.2", "10.0.3.2"};
    return s;
}

} // namespace

TEST(RedundancyForm, ShowsRolePositionAndFirstTwoPairsAndKeepsTheRest) {
    RedundancySection s = fromFile();
    RedundancyForm f = redundancyFormFromConfig(s.config());
    EXPECT_EQ(f.role, 2);
    EXPECT_EQ(f.masterIp[1], "10.0.1.1");
    f.role = 3;
    f.masterPort = "";
    f.masterIp[0] = "a";
    f.slaveIp[1] = "";
    RedundancyConfig c = s.config();
    storeRedundancyForm(f, c);
    EXPECT_EQ(c.type, "client");
    EXPECT_EQ(c.masterPort, "");
    EXPECT_EQ(c.linkMasterIp[0], "a");
    EXPECT_EQ(c.linkSlaveIp[1], "");
    EXPECT_EQ(c.linkMasterIp[2], "10.0.2.1");
    EXPECT_EQ(c.linkSlaveIp[3], "10.0.3.2");

    // A keyword that is none of the four selects nothing and survives OK.
    c.type = "Master";
    f = redundancyFormFromConfig(c);
    EXPECT_EQ(f.role, -1);
    storeRedundancyForm(f, c);
    EXPECT_EQ(c.type, "Master");
}

TEST(RedundancyForm, RefusesOnlyUnstorableCharactersNamingTheField) {
    RedundancyForm f = redundancyFormFromConfig(RedundancyConfig{});
    f.period = "abc"; // taken as typed
    EXPECT_EQ(validateRedundancyForm(f), std::nullopt);
    f.slaveIp[1] = "1<2";
    EXPECT_EQ(validateRedundancyForm(f), checkStorableValue("2: Slave IP Address", "1<2"));
    f.timeout = "\"";
    EXPECT_EQ(validateRedundancyForm(f), checkStorableValue("Link Time Out(ms)", "\""));
    // Addresses come after: an empty row is no pair, a typed one must be an address.
    f = redundancyFormFromConfig(RedundancyConfig{});
    f.masterIp[1] = "10.0.0.300";
    EXPECT_EQ(validateRedundancyForm(f), checkIpv4Address("2: Primary IP Address", "10.0.0.300"));
    ASSERT_TRUE(validateRedundancyForm(f));
}

TEST(RedundancyEditor, OkIsOneStepThatUndoesAndRedoesToTheSameBytes) {
    RedundancySection s = fromFile();
    ScriptedDialog dialog;
    UndoHistory history;
    RedundancySectionEditor editor(s, dialog, history);
    const std::string before = bytes(s);
    EXPECT_EQ(editor.treeMenu(nullptr), 146);

    // Cancel, an unchanged OK and another command change nothing.
    EXPECT_FALSE(editor.run(32863, {}).changed);
    dialog.answer = *dialog.opened;
    EXPECT_FALSE(editor.run(32863, {}).changed);
    EXPECT_FALSE(editor.run(32856, {}).changed);
    EXPECT_EQ(history.count(), 0u);

    dialog.answer->role = 0;
    dialog.answer->period = "250";
    EXPECT_TRUE(editor.run(32863, {}).changed);
    EXPECT_EQ(history.undoText(), "Undo Redundant Configuration");
    const std::string after = bytes(s);
    EXPECT_EQ(after, "<?xml version=\"1.0\" ?>\r\n<redundancy>\r\n</redundancy>\r\n");
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(bytes(s), before);
    ASSERT_TRUE(history.redo());
    EXPECT_EQ(bytes(s), after);
    ASSERT_TRUE(history.undo());
    EXPECT_EQ(s.config(), fromFile().config());
}
