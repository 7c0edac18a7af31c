#pragma once

#include <QObject>

// A data file that cannot be used ends the program with its reason shown and
// logged. A damaged or write-protected one is opened for reading: the reason
// is shown (a damaged file's at once), every change is refused with it, and
// the file keeps its bytes.
class StartUpFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void troubleWithTheDataFile_data();
    void troubleWithTheDataFile();
};
