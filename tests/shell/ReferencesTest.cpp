// The uses of real-time data in the workspace: deleting used data asks first, a
// rename that updates the references is one undo step, and the "References" dock
// goes to a use's record on a double-click.

#include "core/CommandIds.h"
#include "sections/rtdb/ui/RtdbEditorUi.h"
#include "shell/ListView.h"
#include "shell/MainWindow.h"
#include "shell/ProjectTree.h"
#include "shell/QtText.h"
#include "shell/ReferencesBar.h"

#include "ShellApp.h"
#include "support/TestSupport.h"
#include "support/UsedDataProject.h"

#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QTreeWidget>
#include <gtest/gtest.h>

#include <array>
#include <deque>

namespace {

using rqshell::CMainFrame;
using rqshell::str;

struct Dialogs : rq::RtdbDialogHost {
    std::deque<rq::DataForm> data;
    bool databaseDialog(rq::DatabaseForm&) override { return false; }
    bool dataGroupDialog(rq::DataGroupForm&) override { return false; }
    bool dataDialog(rq::DataForm& f) override {
        if (data.empty())
            return false;
        f = data.front();
        data.pop_front();
        return true;
    }
    bool batchDataDialog(rq::BatchDataForm&) override { return false; }
};

void doubleClick(QTreeWidget& list, int row) {
    QWidget* port = list.viewport();
    const QPoint at = list.visualItemRect(list.topLevelItem(row)).center();
    for (QEvent::Type t : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                           QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
        QMouseEvent e(t, at, port->mapToGlobal(at), Qt::LeftButton,
                      t == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                      Qt::NoModifier);
        QApplication::sendEvent(port, &e);
    }
}

struct ReferencesFlow : ::testing::Test {
    ReferencesFlow() {
        rqtest::shellApp();
        rqtest::fillUsedData(frame.project());
        frame.projectLoaded();
        frame.editor<rq::RtdbSectionEditor>(rq::SectionObject::Rtdb).setDialogHost(&dialogs);
    }
    std::array<std::string, rq::kSectionCount> bytes() {
        std::array<std::string, rq::kSectionCount> b;
        for (int i = 1; i < rq::kSectionCount; ++i)
            b[i] = frame.project().doc.sectionText(i);
        return b;
    }
    void selectDataRow(std::size_t row) {
        rq::DataNode& tanks = frame.project().rtdb.findDatabase("plant")->child(0);
        frame.tree().setCurrentItem(frame.editorSection(rq::SectionObject::Rtdb)->itemOf(&tanks));
        frame.view().selectRow(int(row));
    }

    rq::Catalogs catalogs;
    rqtest::RecordingSink sink;
    CMainFrame frame{catalogs, rqtest::programDir(), &sink};
    Dialogs dialogs;
};

TEST_F(ReferencesFlow, DeleteAsksRenameIsOneStepAndTheDockGoesToTheRecord) {
    // Deleting used data lists its uses first; No deletes nothing.
    selectDataRow(0);
    sink.answers = {false};
    frame.runCommand(rq::cmd::kDeleteData);
    ASSERT_EQ(sink.texts().size(), 1u);
    EXPECT_EQ(sink.texts()[0].substr(0, 36), "\"plant.Level\" is used in 7 places:\nh");
    EXPECT_EQ(frame.view().listModel().rowCount(), 4);

    // Modify with a new name, Yes: one step; Undo gives every file's bytes back.
    const auto before = bytes();
    rq::DataForm form =
        rq::dataFormFromItem(frame.project().rtdb.findDatabase("plant")->child(0).item(0));
    form.name = "Height";
    dialogs.data = {form};
    sink.answers = {true};
    frame.runCommand(rq::cmd::kModifyData);
    EXPECT_EQ(str(frame.action(rq::cmd::kUndo)->text()), "Undo Modify Data");
    EXPECT_EQ(frame.project().param.items[0].dataname, "Height");
    const auto after = bytes();
    frame.runCommand(rq::cmd::kUndo);
    EXPECT_EQ(bytes(), before);
    EXPECT_FALSE(frame.project().doc.history().canUndo());
    frame.runCommand(rq::cmd::kRedo);
    EXPECT_EQ(bytes(), after);

    // Find References on the row: the dock lists the uses; a double-click on the
    // second data point's line selects that device and the point's row.
    selectDataRow(0);
    ASSERT_TRUE(frame.commandEnabled(rq::cmd::kFindReferences));
    frame.show();
    frame.runCommand(rq::cmd::kFindReferences);
    rqshell::CReferencesBar& bar = frame.referencesBar();
    EXPECT_TRUE(bar.isVisible());
    EXPECT_EQ(str(bar.summary().text()), "\"plant.Height\" is used in 6 places.");
    ASSERT_EQ(bar.list().topLevelItemCount(), 6);
    EXPECT_EQ(str(bar.list().topLevelItem(2)->text(1)), "link \"bus1\" device \"tankio\" data 2");
    QApplication::processEvents();
    doubleClick(bar.list(), 2);
    rq::DeviceItem& device = frame.project().device.links()[0].devices[0];
    EXPECT_EQ(frame.tree().currentItem(),
              frame.editorSection(rq::SectionObject::Device)->itemOf(&device));
    EXPECT_EQ(frame.view().selectedRows(), std::vector<std::size_t>{1});
    // The parameter's line selects the parameter node and its row.
    doubleClick(bar.list(), 3);
    EXPECT_EQ(frame.tree().currentItem(), frame.tree().fixedNode(rqshell::FixedNode::Parameter));
    EXPECT_EQ(frame.view().selectedRows(), std::vector<std::size_t>{0});

    // The dock follows the project: after Undo the new name is used nowhere; a
    // project closed empties it.
    frame.runCommand(rq::cmd::kUndo);
    EXPECT_EQ(bar.list().topLevelItemCount(), 0);
    EXPECT_EQ(str(bar.summary().text()), "\"plant.Height\" is not used.");
    frame.projectCleared();
    EXPECT_TRUE(bar.item().empty());
    frame.hide();
}

} // namespace
