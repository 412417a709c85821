// The merge dialog of Import: its counts, the refused rows, and Apply only when
// the merge changes something.

#include "shell/TableExchangeUi.h"

#include "ShellApp.h"

#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <gtest/gtest.h>

TEST(ImportMergeDialog, ShowsCountsAndRefusedRowsAndAppliesOnlyChanges) {
    rqtest::shellApp();
    rq::TableMerge merge;
    merge.added = 2;
    merge.unchanged = 5;
    merge.refused = {{4, "Please choose data!"}};
    for (bool changes : {false, true}) {
        if (changes)
            merge.step = std::make_unique<rq::SwapItemLists<std::vector<int>>>("Import", 5);
        rqshell::CImportMergeDialog d(merge, QStringLiteral("p.csv"));
        QStringList texts;
        for (QLabel* l : d.findChildren<QLabel*>())
            texts << l->accessibleName() + "=" + l->text();
        EXPECT_TRUE(texts.contains("Added:=2")) << texts.join("|").toStdString();
        EXPECT_TRUE(texts.contains("Refused:=1")) << texts.join("|").toStdString();
        auto* table = d.findChild<QTableWidget*>();
        ASSERT_TRUE(table);
        EXPECT_EQ(table->accessibleName(), "Refused rows");
        EXPECT_EQ(table->item(0, 0)->text(), "4");
        EXPECT_EQ(table->item(0, 1)->text(), "Please choose data!");
        QPushButton* apply = nullptr;
        for (QPushButton* b : d.findChildren<QPushButton*>())
            if (b->text() == "Apply")
                apply = b;
        ASSERT_TRUE(apply);
        EXPECT_EQ(apply->isEnabled(), changes);
    }
}
