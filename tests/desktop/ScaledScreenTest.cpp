// On a 1366×768 screen at 200 % the frame is smaller than its windows: each
// window, as it opens and maximised, must still be scrolled into view whole.
#include "app/Frame.h"
#include "store/DataFolder.h"
#include "ui/QtDialogs.h"

#include <QApplication>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Where the corner of `sub` lies in the viewport once both scroll bars are at `end`.
QPoint cornerAfterScrolling(QMdiArea& area, QMdiSubWindow* sub, bool farEnd)
{
    QApplication::processEvents();
    for (QScrollBar* bar : {area.horizontalScrollBar(), area.verticalScrollBar()})
        bar->setValue(farEnd ? bar->maximum() : bar->minimum());
    QApplication::processEvents();
    return sub->mapTo(area.viewport(), farEnd ? sub->rect().bottomRight() : QPoint(0, 0));
}

TEST(ScaledScreen, EveryWindowCanBeScrolledIntoViewWhole)
{
    QTemporaryDir folder;
    ASSERT_TRUE(store::createDataFileIfMissing(folder.path()));
    ui::QtDialogs dialogs; // a prepared file opens without a box
    app::FrameOptions options;
    options.splashIntervalMs = 1;
    app::Frame frame(folder.path(), dialogs, options);
    frame.show();
    ASSERT_TRUE(frame.start());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !frame.splashWindow(); }, 60000));
    frame.showServiceWindow();
    frame.showAnalyticsWindow();
    frame.showChartsWindow({}, {});
    QMdiArea& area = *frame.mdiArea();
    ASSERT_EQ(area.subWindowList().size(), 4);
    ASSERT_LT(area.viewport()->width(), area.subWindowList().last()->minimumSizeHint().width());
    for (QMdiSubWindow* sub : area.subWindowList())
        for (bool maximised : {false, true}) {
            maximised ? sub->showMaximized() : sub->showNormal();
            area.setActiveSubWindow(sub);
            for (bool farEnd : {true, false})
                EXPECT_TRUE(area.viewport()->rect().contains(cornerAfterScrolling(area, sub, farEnd)))
                    << qPrintable(sub->widget()->objectName()) << (maximised ? " maximised" : "");
        }
}

} // namespace

int main(int argc, char* argv[])
{
    QTemporaryDir folder;
    QFile screen(folder.filePath("screen.json"));
    if (!screen.open(QIODevice::WriteOnly) ||
        screen.write(R"({"screens": [{"width": 1366, "height": 768}]})") < 0)
        return 1;
    screen.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(screen.fileName()));
    qputenv("QT_SCALE_FACTOR", "2");
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
