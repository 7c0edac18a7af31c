#pragma once

#include <QObject>

// Frame load, sign-in, splash, help and the ways the program ends.
class StartUpTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutPasswordTheMainWindowOpensAtOnce_data();
    void withoutPasswordTheMainWindowOpensAtOnce();
    void signIn_data();
    void signIn();
    void signInWithEnterKey();
    void splashClosesItselfWhileTheUserTypes();
    void everyWayOutEndsTheProgram_data();
    void everyWayOutEndsTheProgram();
    void helpOpensFromButtonAndKey();
    void missingHelpPageIsReported();
    void standardButtonsSpeakRussian();
};
