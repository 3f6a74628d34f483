#pragma once
#include "base/StringCatalog.h"
#include "ui/WindowDriver.h"
#include <gtest/gtest.h>

namespace vesko::testing {

/// The real QML in a real window, driven as a person or an assistive tool drives it.
class AWindow : public ::testing::Test {
protected:
    void showList() {
        driver.show();
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        showGroups(*driver.stage.model, sampleGroups());
        driver.stage.settle();
    }
    void showTwoGroups() {
        driver.show();
        driver.stage.shell.setSelection(QStringLiteral("cleanup"));
        showGroups(*driver.stage.model,
                   {group("trash", {item("/n/a", 500'000'000), item("/n/b", 300'000'000)}),
                    group("cache.npm", {item("/n/c", 700'000'000)})});
        driver.stage.settle();
    }
    static QString text(const char* key) { return QString::fromStdString(localized(key)); }
    CleanupViewModel& model() { return *driver.stage.model; }
    CleanupListModel& list() { return *driver.stage.cleanup.list(); }

    WindowDriver driver;
};

} // namespace vesko::testing
