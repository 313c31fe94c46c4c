#include <QTest>

#include "TestRegistry.h"
#include "catalog/Asset.h"
#include "catalog/AssetSort.h"

class AssetSortTest : public QObject {
    Q_OBJECT
  private slots:
    // Names without regard to case, numbers as numbers, either way; equal values
    // and unknown keys keep the catalog's order.
    void ordersByOneProperty_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<bool>("ascending");
        QTest::addColumn<QString>("order");
        QTest::newRow("filename") << "filename" << true << "a.jpg b.jpg C.jpg D.jpg";
        QTest::newRow("filename, descending") << "filename" << false << "D.jpg C.jpg b.jpg a.jpg";
        QTest::newRow("fileSize") << "fileSize" << true << "b.jpg D.jpg C.jpg a.jpg";
        QTest::newRow("ticked last, stable")
            << "includedInSlideshow" << true << "a.jpg C.jpg b.jpg D.jpg";
        QTest::newRow("no such property") << "colour" << true << "C.jpg a.jpg b.jpg D.jpg";
    }
    void ordersByOneProperty() {
        QFETCH(QString, key);
        QFETCH(bool, ascending);
        QFETCH(QString, order);
        // Sizes 100, 9, 10 and 9: numbers, not texts, decide.
        const QList<std::pair<const char*, quint64>> records = {
            {"C.jpg", 100}, {"a.jpg", 9000}, {"b.jpg", 9}, {"D.jpg", 10}};
        QList<std::shared_ptr<Asset>> assets;
        for (const auto& [name, size] : records) {
            auto asset = std::make_shared<Asset>(QUrl::fromLocalFile(QStringLiteral("/x/") + name));
            asset->setFileSize(size);
            asset->setIncludedInSlideshow(size != 9000);
            assets.append(asset);
        }
        QStringList names;
        for (const auto& asset :
             AssetSort::sorted(assets, {AssetSort::keyPathFor(key), ascending})) {
            names.append(asset->filename());
        }
        QCOMPARE(names.join(' '), order);
    }
};
SW_TEST_CLASS(AssetSortTest)

#include "AssetSortTest.moc"
