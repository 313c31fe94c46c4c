#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "TestRegistry.h"
#include "platform/RadioMatrix.h"

class RadioMatrixTest : public QObject {
    Q_OBJECT
  private slots:
    // Cells are numbered row by row in a grid of two rows and three columns.
    void selection() {
        RadioMatrix matrix;
        matrix.setRows(2);
        matrix.setColumns(3);
        matrix.setCellTitles({"a", "b", "c", "d", "e"});
        QSignalSpy clicks(&matrix, &RadioMatrix::cellClicked);
        // A click selects its cell alone and is sent once.
        matrix.cell(4)->click();
        QCOMPARE(clicks.size(), 1);
        QCOMPARE(matrix.selectedRow(), 1);
        QCOMPARE(matrix.selectedColumn(), 1);
        QCOMPARE(matrix.cell(4)->text(), "e");
        QVERIFY(!matrix.cell(0)->isChecked());
        // Selecting in code sends nothing; an index outside the grid is ignored.
        matrix.selectCell(1, 0);
        QVERIFY(matrix.cell(3)->isChecked());
        matrix.setSelectedIndex(6);
        QCOMPARE(matrix.selectedIndex(), 3);
        QCOMPARE(clicks.size(), 1);
        // A smaller grid keeps the selection inside it.
        matrix.setRows(1);
        QCOMPARE(matrix.selectedIndex(), 2);
    }
};
SW_TEST_CLASS(RadioMatrixTest)

#include "RadioMatrixTest.moc"
