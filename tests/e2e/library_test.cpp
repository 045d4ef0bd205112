// Makes the demo catalogue that the journeys play, once.

#include "e2e/journey.h"

class LibraryTest : public QObject {
    Q_OBJECT
private slots:
    void theDemoCatalogueIsRendered() { QVERIFY(Journey::makeLibrary()); }
};

QTEST_GUILESS_MAIN(LibraryTest)
#include "library_test.moc"
