#pragma once

#include <QObject>

// The main window's layout and the figures it shows; Enter in every window.
class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void everyControlIsInPlace();
    void figures_data();
    void figures();
    void listsAreInCodeOrderWithNothingChosen();
    void refreshShowsWhatChangedMeanwhile();
    void enterMovesOnInAFrameAndRunsItsOperation();
};
