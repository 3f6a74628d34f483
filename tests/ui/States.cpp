#include "ui/States.h"
#include "base/StringCatalog.h"
#include <QAccessible>
#include <QMetaEnum>
#include <QMetaObject>
#include <QQuickItem>
#include <functional>
#include <map>

namespace vesko::testing {

namespace {

using Enter = std::function<void(ScreenStage&)>;

QQuickItem* find(QQuickItem* from, const char* type) {
    if (QString::fromLatin1(from->metaObject()->className()).startsWith(QLatin1String(type))) return from;
    const QList<QQuickItem*> children = from->childItems();
    for (QQuickItem* child : children) {
        if (QQuickItem* found = find(child, type)) return found;
    }
    return nullptr;
}

void showCleanup(ScreenStage& stage) { stage.shell.setSelection(QStringLiteral("cleanup")); }

void showList(ScreenStage& stage) {
    showCleanup(stage);
    showGroups(*stage.model, sampleGroups());
}

void showHome(ScreenStage& stage) {
    showGroups(*stage.model, sampleGroups());
    showDashboard(stage, sampleBuckets());
}

void showInspector(ScreenStage& stage, const char* bucketID) {
    showHome(stage);
    stage.settle();
    stage.homeScreen.selectBucket(QString::fromLatin1(bucketID));
}

void expand(ScreenStage& stage, std::string_view groupID) {
    stage.settle();
    CleanupListModel& list = *stage.cleanup.list();
    list.setExpanded(list.rowOfGroup(groupID), true);
    stage.settle();
    Q_EMIT stage.cleanup.scrollRequested(list.rowOfGroup(groupID));
}

ScanProgress progress() { return {"npm", 7, 31'500'000'000, 1284, 0.42}; }

void openSheet(ScreenStage& stage, const QString& typed) {
    stage.settle();
    QQuickItem* sheet = find(stage.window.window()->contentItem(), "ConfirmationSheet");
    QMetaObject::invokeMethod(sheet, "present");
    stage.settle();
    if (QQuickItem* field = find(sheet, "QQuickTextInput")) field->setProperty("text", typed);
}

void openSettings(ScreenStage& stage, const char* tab) {
    showHome(stage);
    stage.settings.setTab(QString::fromLatin1(tab));
    stage.settings.open();
}

void openMenu(ScreenStage& stage) {
    showHome(stage);
    stage.updater->set(false, NewerVersion{"1.4", "", ""});
    stage.settle();
    QMetaObject::invokeMethod(find(stage.window.window()->contentItem(), "SidebarFoot"), "openMenu");
}

const std::map<QString, Enter>& states() {
    static const std::map<QString, Enter> table{
        {"access", [](ScreenStage&) {}},
        {"home-skeleton", [](ScreenStage&) {}},
        {"home-filling",
         [](ScreenStage& stage) {
             std::vector<StorageCategoryBucket> buckets = sampleBuckets();
             buckets[1].bytes = 0;
             buckets[3].bytes = 0;
             showDashboard(stage, std::move(buckets), {"documents", "library"});
         }},
        {"home", showHome},
        {"home-busy",
         [](ScreenStage& stage) {
             showHome(stage);
             stage.homeModel->pendingBucketIDs = std::set<std::string>{"documents", "system"};
         }},
        {"home-inspector", [](ScreenStage& stage) { showInspector(stage, "library"); }},
        {"home-inspector-plain", [](ScreenStage& stage) { showInspector(stage, "media"); }},
        {"home-scanning",
         [](ScreenStage& stage) {
             showHome(stage);
             stage.model->phase = CleanupPhase::scanning();
         }},
        {"awaiting", showCleanup},
        {"preparing",
         [](ScreenStage& stage) {
             showCleanup(stage);
             stage.model->phase = CleanupPhase::scanning();
         }},
        {"scanning",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->phase = CleanupPhase::scanning();
             stage.model->scanProgress = std::optional(progress());
         }},
        {"list", showList},
        {"expanded",
         [](ScreenStage& stage) {
             showList(stage);
             expand(stage, "xcode.deviceSupport");
             expand(stage, "xcode.derivedData");
         }},
        {"analyzing",
         [](ScreenStage& stage) {
             showList(stage);
             std::unordered_set<EnrichmentKey> keys;
             for (const ScannableItem& each : (*stage.model->groups)[0].items)
                 keys.insert(each.enrichmentKey);
             for (const ScannableItem& each : (*stage.model->groups)[3].items)
                 keys.insert(each.enrichmentKey);
             stage.model->analyzingKeys = keys;
             stage.model->isEnriching = true;
         }},
        {"reviewing",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->isReviewing = true;
         }},
        {"reviewed",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->aiDiscoveredURLs = URLSet{(*stage.model->groups)[0].items.front().url};
             stage.model->reviewMessage = std::optional(localized("review.promotedOnly %lld", 1));
             expand(stage, (*stage.model->groups)[0].id);
         }},
        {"search",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->searchText = std::string("cache");
         }},
        {"search-none",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->searchText = std::string("zzzz");
         }},
        {"partial",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->scanWasPartial = true;
         }},
        {"failed",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->phase = CleanupPhase::error(
                 "ubuntu-image.iso: Permission denied\nold-photos-export.tar: Permission denied");
             stage.model->cleanupMessage =
                 std::optional(localized("cleanup.partialFailure %1$lld %2$lld", 4, 2));
         }},
        {"success",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->cleanupMessage =
                 std::optional(localized("cleanup.success %1$lld %2$@", 12, "48,2 GB"));
         }},
        {"success-empty",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->groups = std::vector<CleanupGroup>();
             stage.model->cleanupMessage =
                 std::optional(localized("cleanup.success %1$lld %2$@", 40, "84,3 GB"));
         }},
        {"deleting",
         [](ScreenStage& stage) {
             showList(stage);
             stage.model->phase = CleanupPhase::cleaning();
             stage.model->deletionProgress = std::optional(
                 DeletionProgress{12, 40, 3'100'000'000, 48'200'000'000, "ModuleCache.noindex"});
         }},
        {"confirm",
         [](ScreenStage& stage) {
             showList(stage);
             openSheet(stage, QString());
         }},
        {"confirm-ready",
         [](ScreenStage& stage) {
             showList(stage);
             openSheet(stage, QString::fromStdString(localized("delete.confirm.word")));
         }},
        {"menu", openMenu},
        {"settings-general", [](ScreenStage& stage) { openSettings(stage, "general"); }},
        {"settings-general-off",
         [](ScreenStage& stage) {
             stage.storedPreferences.lowSpaceEnabled = false;
             stage.storedPreferences.largeOpportunityEnabled = false;
             openSettings(stage, "general");
         }},
        {"settings-updates", [](ScreenStage& stage) { openSettings(stage, "updates"); }},
        {"settings-updates-newer",
         [](ScreenStage& stage) {
             stage.updater->set(false,
                                NewerVersion{"1.4", "Finds two more caches.\nThe dashboard opens sooner.",
                                             "https://example.org/vesko"});
             openSettings(stage, "updates");
         }},
        {"settings-about", [](ScreenStage& stage) { openSettings(stage, "about"); }},
        {"settings-acknowledgements",
         [](ScreenStage& stage) {
             openSettings(stage, "about");
             stage.settle();
             QMetaObject::invokeMethod(find(stage.settingsWindow()->contentItem(), "AboutSettingsView"),
                                       "askForAcknowledgements");
         }},
    };
    return table;
}

void describe(QString& text, QAccessibleInterface* element, int depth) {
    if (!element || !element->isValid()) return;
    const QAccessible::State state = element->state();
    if (state.invisible && depth > 0) return;
    const char* role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(element->role());
    text += QString(depth * 2, QLatin1Char(' ')) + QLatin1String(role ? role : "?");
    if (state.disabled) text += QStringLiteral(" disabled");
    if (state.checkStateMixed)
        text += QStringLiteral(" mixed");
    else if (state.checked)
        text += QStringLiteral(" checked");
    if (state.selected) text += QStringLiteral(" selected");
    const QString name = element->text(QAccessible::Name);
    if (!name.isEmpty()) text += QStringLiteral(" \"%1\"").arg(name);
    if (element->role() == QAccessible::Slider && element->valueInterface())
        text += QLatin1Char(' ') + element->valueInterface()->currentValue().toString();
    text += QLatin1Char('\n');
    for (int i = 0; i < element->childCount(); ++i) describe(text, element->child(i), depth + 1);
}

} // namespace

QStringList stateNames() {
    QStringList names;
    for (const auto& [name, enter] : states()) names.append(name);
    return names;
}

void enterState(ScreenStage& stage, const QString& name) {
    states().at(name)(stage);
    stage.settle();
}

QQuickWindow* shownWindow(const ScreenStage& stage) {
    QQuickWindow* settings = stage.settingsWindow();
    return settings ? settings : stage.window.window();
}

QString accessibleTree(QQuickWindow* window) {
    QString text;
    describe(text, QAccessible::queryAccessibleInterface(window), 0);
    return text;
}

} // namespace vesko::testing
