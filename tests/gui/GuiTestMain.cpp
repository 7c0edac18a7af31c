#include "MainWindowTest.h"
#include "StartUpFailureTest.h"
#include "StartUpTest.h"

#include <QApplication>
#include <QTest>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    int failures = 0;
    {
        StartUpTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        StartUpFailureTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        MainWindowTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures == 0 ? 0 : 1;
}
