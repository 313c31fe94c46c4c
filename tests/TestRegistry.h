#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <vector>

// Lets every test file in a folder add its QtTest classes to the folder's one
// executable: SW_TEST_CLASS(MyTest) after the class definition.
namespace TestRegistry {
using Factory = std::function<std::unique_ptr<QObject>()>;
int add(const char* name, Factory factory);
// Real photos shipped beside the repository; empty when the folder is absent.
QString photosDir();
}  // namespace TestRegistry

#define SW_TEST_CLASS(Class)              \
    static const int Class##_registered = \
        TestRegistry::add(#Class, [] { return std::make_unique<Class>(); });
