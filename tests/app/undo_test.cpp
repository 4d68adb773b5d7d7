// SPDX-License-Identifier: MIT
// What the user deletes can be put back, by the button, by a key, in the dialog and after it.
#include "app/viewer_harness.h"
#include "map/mark_manager.h"
#include "map/overlay_mark.h"
#include "page/image.h"
#include "support/dialog_script.h"
#include "weather/dialog_controls.h"
#include "window/undo.h"

#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace raincast {
namespace {

using test::DialogScript;

class UndoTest : public test::ViewerHarness {
protected:
    UndoTest() { options.siteId = "MUX"; }

    static Undo& undoOf(Viewer& viewer) { return *viewer.application().undo(); }
    static std::string offered(Viewer& viewer) {
        const Undo& undo = undoOf(viewer);
        return undo.isVisible() ? undo.findChild<QLabel*>()->text().toStdString() : "-";
    }
    static void pressUndo(Viewer& viewer) {
        QTest::mouseClick(undoOf(viewer).findChild<QPushButton*>(), Qt::LeftButton);
    }
    static std::string marksOf(Viewer& viewer) {
        QStringList names;
        for (const COverlayMark& mark : viewer.application().marks().marks()) {
            names.append(mark.name);
        }
        return names.join(u' ').toStdString();
    }
    static std::string pagesOf(Viewer& viewer) {
        QStringList names;
        for (const auto& page : viewer.application().pages()) {
            names.append(page->name());
        }
        return names.join(u' ').toStdString();
    }
    static void addMarks(Viewer& viewer) {
        CMarkManager& marks = viewer.application().marks();
        for (const char* name : {"One", "Two", "Three"}) {
            marks.add({37.155 - marks.marks().size() / 10.0, -121.898}, QString(name));
        }
    }
    void inMarks(Viewer& viewer, DialogScript::Step step) {
        script.expect("Marks", std::move(step));
        choose(viewer, {"Menu", "Map", "Marks", "Marks..."});
    }
    void inPages(Viewer& viewer, DialogScript::Step step) {
        script.expect("Pages", std::move(step));
        choose(viewer, {"Menu", "Pages..."});
    }
    static void selectRow(QDialog& dialog, const QString& text) {
        auto& list = *dialog.findChild<QListWidget*>();
        list.setCurrentItem(list.findItems(text, Qt::MatchExactly).value(0));
    }

    DialogScript script;
};

TEST_F(UndoTest, AMarkComesBackInItsDialog) {
    run([this](Viewer& viewer) {
        addMarks(viewer);
        inMarks(viewer, [&](QDialog& dialog) {
            EXPECT_EQ(offered(viewer), "-");
            selectRow(dialog, "Two");
            test::press(dialog, "Delete");
            EXPECT_EQ(marksOf(viewer), "One Three");
            EXPECT_EQ(offered(viewer), "Deleted Two.");
            EXPECT_EQ(undoOf(viewer).window(), &dialog);
            pressUndo(viewer);
            EXPECT_EQ(marksOf(viewer), "One Two Three");
            EXPECT_EQ(dialog.findChild<QListWidget*>()->count(), 3);
            EXPECT_EQ(offered(viewer), "-");
            test::press(dialog, "Delete");
            QTest::keyClick(&dialog, Qt::Key_Z, Qt::ControlModifier);
            EXPECT_EQ(marksOf(viewer), "One Two Three");
        });
    });
}

TEST_F(UndoTest, AMarkComesBackAfterItsDialog) {
    run([this](Viewer& viewer) {
        addMarks(viewer);
        CMarkManager& marks = viewer.application().marks();
        marks.setTarget(marks.marks().front());
        inMarks(viewer, [&](QDialog& dialog) {
            selectRow(dialog, "One");
            test::press(dialog, "Delete");
            test::press(dialog, "Close");
        });
        EXPECT_FALSE(marks.hasTarget());
        EXPECT_EQ(offered(viewer), "Deleted One.");
        EXPECT_EQ(undoOf(viewer).window(), viewer.window()->frame());
        keyInWindow(viewer, Qt::Key_Left);
        QMainWindow& frame = *viewer.window()->frame();
        QTest::keyClick(frame.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(marksOf(viewer), "One Two Three");
        EXPECT_TRUE(marks.isTarget(marks.marks().front()));
        EXPECT_EQ(offered(viewer), "-");
    });
}

TEST_F(UndoTest, TheOfferEndsAfterTenSeconds) {
    run([this](Viewer& viewer) {
        addMarks(viewer);
        inMarks(viewer, [](QDialog& dialog) { test::press(dialog, "Delete"); });
        auto& timer = *undoOf(viewer).findChild<QTimer*>();
        EXPECT_TRUE(timer.isActive());
        EXPECT_EQ(timer.interval(), 10'000);
        timer.setInterval(0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return offered(viewer) == "-"; }));
        QTest::keyClick(viewer.window()->frame()->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(viewer.application().marks().marks().size(), 2U);
    });
}

TEST_F(UndoTest, APageComesBackWhereItWas) {
    run([this](Viewer& viewer) {
        viewer.application().append(std::make_unique<CPageDisplay>()).setName("Mine");
        const auto* const weather = viewer.application().current();
        const RadarState& state = itemOf(viewer).state();
        const auto frames = state.frames.size();
        inPages(viewer, [&](QDialog& dialog) {
            test::press(dialog, "Delete");
            EXPECT_EQ(pagesOf(viewer), "Mine");
            EXPECT_EQ(offered(viewer), "Deleted Weather.");
            pressUndo(viewer);
            EXPECT_EQ(pagesOf(viewer), "Weather Mine");
            EXPECT_EQ(dialog.findChild<QListWidget*>()->count(), 2);
            EXPECT_EQ(dialog.findChild<QListWidget*>()->currentRow(), 0);
        });
        EXPECT_EQ(viewer.application().current(), weather);
        EXPECT_EQ(itemOf(viewer).state().frames.size(), frames);
    });
}

TEST_F(UndoTest, RestoringTheDefaultPagesIsUndone) {
    run([this](Viewer& viewer) {
        viewer.application().append(std::make_unique<CPageDisplay>()).setName("Mine");
        viewer.application().select(1);
        inPages(viewer, [&](QDialog& dialog) {
            script.expect("Weather Station");
            test::press(dialog, "Restore default");
        });
        EXPECT_EQ(pagesOf(viewer), "Weather");
        EXPECT_EQ(offered(viewer), "Restored default pages.");
        viewer.application().append(std::make_unique<CPageDisplay>()).setName("New");
        pressUndo(viewer);
        EXPECT_EQ(pagesOf(viewer), "Weather Mine New");
        EXPECT_EQ(viewer.application().current()->name(), "Mine");
        EXPECT_EQ(itemOf(viewer).state().siteId, "MUX");
    });
}

TEST_F(UndoTest, AnItemComesBackWhereItWas) {
    run([this](Viewer& viewer) {
        auto& page = dynamic_cast<CPageDisplay&>(*viewer.application().current());
        page.addItem(std::make_unique<CPageDisplay::CImage>()).setRectangle({50, 60, 150, 160});
        page.select(page.items()[0].get());
        choose(viewer, {"Menu", "Layout", "Delete item"});
        EXPECT_EQ(page.items().size(), 1U);
        EXPECT_EQ(offered(viewer), "Deleted Radar.");
        pressUndo(viewer);
        ASSERT_EQ(page.items().size(), 2U);
        EXPECT_EQ(itemOf(viewer).state().siteId, "MUX");
        EXPECT_EQ(itemOf(viewer).marks(), &viewer.application().marks());
        EXPECT_FALSE(itemOf(viewer).state().frames.empty());
        EXPECT_EQ(page.items()[1]->rectangle(), (PageRectangle{50, 60, 150, 160}));
        page.select(page.items()[1].get());
        choose(viewer, {"Menu", "Layout", "Delete item"});
        keyInWindow(viewer, Qt::Key_Left);
        QTest::keyClick(viewer.window()->frame()->windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(page.items().size(), 2U);
    });
}

TEST_F(UndoTest, OnlyTheLastStepIsTaken) {
    run([this](Viewer& viewer) {
        addMarks(viewer);
        inMarks(viewer, [&](QDialog& dialog) {
            selectRow(dialog, "One");
            test::press(dialog, "Delete");
            selectRow(dialog, "Two");
            test::press(dialog, "Delete");
            EXPECT_EQ(offered(viewer), "Deleted Two.");
            pressUndo(viewer);
            undoOf(viewer).undo();
        });
        EXPECT_EQ(marksOf(viewer), "Two Three");
    });
}

// What is deleted goes with the program, whatever is offered then.
TEST_F(UndoTest, TheProgramEndsWhileItIsOffered) {
    run([this](Viewer& viewer) {
        inPages(viewer, [&](QDialog& dialog) {
            script.expect("Select Page Type");
            test::press(dialog, "Delete");
        });
        EXPECT_EQ(offered(viewer), "Deleted Weather.");
    });
}

TEST_F(UndoTest, LongNamesAreCut) {
    EXPECT_EQ(Undo::deleted("Harbour").toStdString(), "Deleted Harbour.");
    EXPECT_EQ(Undo::deleted(QString(100, u'x')).size(), 33);
    EXPECT_EQ(Undo::deleted("two\nlines").count(u'\n'), 0);
}

} // namespace
} // namespace raincast
