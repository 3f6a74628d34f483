#include "platform/posix/PlatformUserDefaults.h"

#include "CoreFoundation.h"
#include <cmath>

/// The preferences of the program's identifier (Preferences Programming Topics for Core Foundation). Only
/// what was synchronized is sure to be kept, so each change is, whatever becomes of this process.
namespace vesko {
namespace {

/// Nothing for a missing value and for one of another type.
Owned<CFTypeRef> valueOf(std::string_view key, CFTypeID type) {
    const Owned<CFStringRef> name = stringOf(key);
    if (!name) return nullptr;
    Owned<CFTypeRef> value(CFPreferencesCopyAppValue(name.get(), kCFPreferencesCurrentApplication));
    if (!value || CFGetTypeID(value.get()) != type) return nullptr;
    return value;
}

std::optional<std::string> textOf(CFStringRef string) {
    const CFRange all{0, CFStringGetLength(string)};
    CFIndex length = 0;
    const CFIndex count = CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, nullptr, 0, &length);
    // Half a surrogate pair has no UTF-8.
    if (count != all.length) return std::nullopt;
    std::string text(static_cast<std::size_t>(length), '\0');
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8*>(text.data()),
                     length, nullptr);
    return text;
}

class PreferencesUserDefaults final : public UserDefaults {
public:
    std::optional<bool> boolean(std::string_view key) const override {
        const Owned<CFTypeRef> value = valueOf(key, CFBooleanGetTypeID());
        if (!value) return std::nullopt;
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) != 0;
    }
    std::optional<std::int64_t> integer(std::string_view key) const override {
        const Owned<CFTypeRef> value = valueOf(key, CFNumberGetTypeID());
        std::int64_t number = 0;
        // It tells whether the figure went through without loss.
        if (!value || !CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type, &number))
            return std::nullopt;
        return number;
    }
    std::optional<double> number(std::string_view key) const override {
        const Owned<CFTypeRef> value = valueOf(key, CFNumberGetTypeID());
        if (!value) return std::nullopt;
        double number = 0;
        // An integer that has no such number comes as the nearest one, and the call says so.
        CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberFloat64Type, &number);
        return number;
    }
    std::optional<std::string> string(std::string_view key) const override {
        const Owned<CFTypeRef> value = valueOf(key, CFStringGetTypeID());
        return value ? textOf(static_cast<CFStringRef>(value.get())) : std::nullopt;
    }
    std::optional<std::string> data(std::string_view key) const override {
        const Owned<CFTypeRef> value = valueOf(key, CFDataGetTypeID());
        if (!value) return std::nullopt;
        const auto bytes = static_cast<CFDataRef>(value.get());
        return std::string(reinterpret_cast<const char*>(CFDataGetBytePtr(bytes)),
                           static_cast<std::size_t>(CFDataGetLength(bytes)));
    }

    void setBoolean(std::string_view key, bool value) override {
        set(key, value ? kCFBooleanTrue : kCFBooleanFalse);
    }
    void setInteger(std::string_view key, std::int64_t value) override {
        const Owned<CFNumberRef> number(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &value));
        set(key, number.get());
    }
    void setNumber(std::string_view key, double value) override {
        if (!std::isfinite(value)) return;
        const Owned<CFNumberRef> number(CFNumberCreate(kCFAllocatorDefault, kCFNumberFloat64Type, &value));
        set(key, number.get());
    }
    void setString(std::string_view key, std::string_view text) override {
        const Owned<CFStringRef> string = text.size() > longestValue ? nullptr : stringOf(text);
        if (string) set(key, string.get());
    }
    void setData(std::string_view key, std::string_view bytes) override {
        if (bytes.size() > longestValue) return;
        const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                                 reinterpret_cast<const UInt8*>(bytes.data()),
                                                 static_cast<CFIndex>(bytes.size())));
        set(key, data.get());
    }
    void remove(std::string_view key) override { set(key, nullptr); }

private:
    /// No value removes what is there.
    static void set(std::string_view key, CFPropertyListRef value) {
        const Owned<CFStringRef> name = stringOf(key);
        if (!name) return;
        CFPreferencesSetAppValue(name.get(), value, kCFPreferencesCurrentApplication);
        CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
    }
};

} // namespace

std::shared_ptr<UserDefaults> platformUserDefaults(const TaskContext& /*tasks*/) {
    return std::make_shared<PreferencesUserDefaults>();
}

} // namespace vesko
