#pragma once

#include <QObject>

// A data file that cannot be used: the reason is shown and logged, the
// program ends with a failure code, and the file stays as it was.
class StartUpFailureTest : public QObject
{
    Q_OBJECT

private slots:
    void unusableDataFileEndsTheProgram_data();
    void unusableDataFileEndsTheProgram();
};
