#include <QTest>
#include <memory>

#include "TestRegistry.h"
#include "platform/NotificationCenter.h"

class NotificationCenterTest : public QObject {
    Q_OBJECT
  private slots:
    // By name and in registration order; a handler may remove a later observer,
    // which is then not called; a destroyed observer is forgotten under every name.
    void delivery() {
        NotificationCenter center;
        QObject a;
        QObject remover;
        QObject removed;
        auto gone = std::make_unique<QObject>();
        QStringList seen;
        const auto record = [&seen](const QString& who) {
            return [&seen, who](const Notification& n) { seen << who + n.object.toString(); };
        };
        center.addObserver(&a, "x", record("a"));
        center.addObserver(gone.get(), "x", record("gone"));
        center.addObserver(gone.get(), "y", record("gone"));
        center.addObserver(&remover, "y",
                           [&](const Notification&) { center.removeObserver(&removed); });
        center.addObserver(&removed, "y", record("removed"));
        center.post("x", QStringLiteral("1"));
        center.post("z");
        center.post("y", QStringLiteral("2"));
        gone.reset();
        center.post("x", QStringLiteral("3"));
        center.post("y", QStringLiteral("4"));
        QCOMPARE(seen, (QStringList{"a1", "gone1", "gone2", "a3"}));
        QCOMPARE(center.observerCount("x"), 1);
    }
};
SW_TEST_CLASS(NotificationCenterTest)

#include "NotificationCenterTest.moc"
