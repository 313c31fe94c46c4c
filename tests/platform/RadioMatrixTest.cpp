#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

#include "TestRegistry.h"
#include "platform/RadioMatrix.h"

class RadioMatrixTest : public QObject {
    Q_OBJECT
  private slots:
    void rowAndColumnOfTheClickedCell_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("cell");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("3x1, last") << 3 << 1 << 2 << 2 << 0;
        QTest::newRow("2x2, second row first column") << 2 << 2 << 2 << 1 << 0;
        QTest::newRow("2x2, last") << 2 << 2 << 3 << 1 << 1;
        QTest::newRow("1x3, third column") << 1 << 3 << 2 << 0 << 2;
    }
    void rowAndColumnOfTheClickedCell() {
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(int, cell);
        QFETCH(int, row);
        QFETCH(int, column);
        RadioMatrix matrix;
        matrix.setRows(rows);
        matrix.setColumns(columns);
        matrix.setCellTitles({"a", "b", "c", "d"});
        QSignalSpy clicks(&matrix, &RadioMatrix::cellClicked);
        matrix.cell(cell)->click();
        QCOMPARE(clicks.size(), 1);
        QCOMPARE(matrix.selectedRow(), row);
        QCOMPARE(matrix.selectedColumn(), column);
        QVERIFY(matrix.cell(cell)->isChecked());
        QVERIFY(!matrix.cell(0)->isChecked() || cell == 0);
    }

    void selectingInCodeSendsNothing() {
        RadioMatrix matrix;
        matrix.setRows(2);
        matrix.setColumns(2);
        QSignalSpy clicks(&matrix, &RadioMatrix::cellClicked);
        matrix.selectCell(1, 1);
        QCOMPARE(matrix.selectedIndex(), 3);
        QVERIFY(matrix.cell(3)->isChecked());
        matrix.setSelectedIndex(9);
        QCOMPARE(matrix.selectedIndex(), 3);
        QCOMPARE(clicks.size(), 0);
    }
};
SW_TEST_CLASS(RadioMatrixTest)

#include "RadioMatrixTest.moc"
