#include "background/PlatformUpdater.h"

#include "background/UnavailableUpdater.h"
#import <Foundation/Foundation.h>
#include <functional>

/// What is asked of the framework's objects, which are found when the program runs.
@protocol FrameworkUpdaterCalls
@property(readonly) BOOL canCheckForUpdates;
@property BOOL automaticallyChecksForUpdates;
@end
@protocol FrameworkControllerCalls
- (id)initWithStartingUpdater:(BOOL)startingUpdater
              updaterDelegate:(id)updaterDelegate
           userDriverDelegate:(id)userDriverDelegate;
@property(readonly) NSObject<FrameworkUpdaterCalls>* updater;
- (void)checkForUpdates:(id)sender;
@end

/// Hears of changes of the framework's answers, on the main thread.
@interface FrameworkUpdaterObserver : NSObject {
@public
    std::function<void()> onChange;
}
@end
@implementation FrameworkUpdaterObserver
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSString*, id>*)change
                       context:(void*)context {
    // Whoever is told may end the updater, and this object with it.
    const std::function<void()> told = onChange;
    if (told) told();
}
@end

namespace vesko {
namespace {

constexpr NSUInteger noOptions = 0;

/// The framework's controller, where the framework lies in the bundle.
Class controllerClass() {
    NSString* frameworks = NSBundle.mainBundle.privateFrameworksPath;
    if (frameworks == nil) return nil;
    NSBundle* framework =
        [NSBundle bundleWithPath:[frameworks stringByAppendingPathComponent:@"Sparkle.framework"]];
    // Loads the framework; without one there is no class.
    Class found = [framework classNamed:@"SPUStandardUpdaterController"];
    const bool answers = found != nil && [found instancesRespondToSelector:@selector(checkForUpdates:)] &&
                         [found instancesRespondToSelector:@selector(updater)];
    return answers ? found : nil;
}

/// The updater framework: it keeps the switch, checks by itself, and shows what it finds in windows of its
/// own. Its controller is made with the first question.
class FrameworkUpdater final : public Updater {
public:
    explicit FrameworkUpdater(Class found) : class_(found) {}
    ~FrameworkUpdater() override {
        if (controller_ == nil) return;
        [controller_.updater removeObserver:observer_ forKeyPath:@"canCheckForUpdates"];
        [controller_.updater removeObserver:observer_ forKeyPath:@"automaticallyChecksForUpdates"];
    }

    bool automaticallyChecksForUpdates() const override {
        return controller().updater.automaticallyChecksForUpdates != NO;
    }
    void setAutomaticallyChecksForUpdates(bool automatically) override {
        controller().updater.automaticallyChecksForUpdates = automatically ? YES : NO;
    }
    bool canCheckForUpdates() const override { return controller().updater.canCheckForUpdates != NO; }
    void checkForUpdates() override {
        if (canCheckForUpdates()) [controller() checkForUpdates:nil];
    }
    const std::optional<NewerVersion>& newerVersion() const override { return none_; }
    void openPage() override {}
    void start() override { static_cast<void>(controller()); }

private:
    void observe(NSString* key) const {
        [controller_.updater addObserver:observer_ forKeyPath:key options:noOptions context:nullptr];
    }

    NSObject<FrameworkControllerCalls>* controller() const {
        if (controller_ != nil) return controller_;
        id made = [class_ alloc];
        controller_ = [(id<FrameworkControllerCalls>)made initWithStartingUpdater:YES
                                                                  updaterDelegate:nil
                                                               userDriverDelegate:nil];
        observer_ = [[FrameworkUpdaterObserver alloc] init];
        observer_->onChange = [source = &changes] { source->notify(); };
        observe(@"canCheckForUpdates");
        observe(@"automaticallyChecksForUpdates");
        return controller_;
    }

    Class class_;
    mutable NSObject<FrameworkControllerCalls>* controller_ = nil;
    mutable FrameworkUpdaterObserver* observer_ = nil;
    std::optional<NewerVersion> none_;
};

} // namespace

std::shared_ptr<Updater> platformUpdater(const TaskContext&, std::shared_ptr<UserDefaults>) {
    Class found = controllerClass();
    if (found == nil) return std::make_shared<UnavailableUpdater>();
    return std::make_shared<FrameworkUpdater>(found);
}

} // namespace vesko
