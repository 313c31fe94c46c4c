#include <QTest>

#include "TestRegistry.h"
#include "platform/NotificationCenter.h"

class NotificationCenterTest : public QObject {
    Q_OBJECT
  private slots:
    void deliversByNameInRegistrationOrder() {
        NotificationCenter center;
        QObject a;
        QObject b;
        QStringList seen;
        center.addObserver(&a, "x",
                           [&](const Notification& n) { seen << "a:" + n.object.toString(); });
        center.addObserver(&b, "x",
                           [&](const Notification& n) { seen << "b:" + n.object.toString(); });
        center.addObserver(&b, "y", [&](const Notification&) { seen << "b:y"; });
        center.post("x", QStringLiteral("1"));
        center.post("z");
        QCOMPARE(seen, (QStringList{"a:1", "b:1"}));
    }

    void destroyedObserverIsForgotten() {
        NotificationCenter center;
        int calls = 0;
        {
            QObject observer;
            center.addObserver(&observer, "x", [&](const Notification&) { ++calls; });
            center.addObserver(&observer, "y", [&](const Notification&) { ++calls; });
            QCOMPARE(center.observerCount("x"), 1);
        }
        center.post("x");
        center.post("y");
        QCOMPARE(calls, 0);
        QCOMPARE(center.observerCount("x"), 0);
    }

    // A handler may remove a later observer; that one is then not called.
    void handlerRemovingAnotherObserver() {
        NotificationCenter center;
        QObject first;
        QObject second;
        int secondCalls = 0;
        center.addObserver(&first, "x",
                           [&](const Notification&) { center.removeObserver(&second); });
        center.addObserver(&second, "x", [&](const Notification&) { ++secondCalls; });
        center.post("x");
        QCOMPARE(secondCalls, 0);
    }
};
SW_TEST_CLASS(NotificationCenterTest)

#include "NotificationCenterTest.moc"
