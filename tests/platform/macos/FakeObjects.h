#pragma once
#include <Block.h>
#include <Foundation/Foundation.h>
#include <any>
#include <functional>
#include <memory>
#include <string>

namespace vesko::testing {

/// What the stand-ins for the system's classes are made of. Objects live until they are disposed of all
/// together: nothing counts references here. Objective-C++ only; tests use the headers of the single
/// stand-ins.

/// A value that belongs to an object, by a name; a fresh one with the first question. From any thread.
std::any& valueOf(id object, const char* name);
template <class Value> Value& valueOf(id object, const char* name) {
    std::any& value = valueOf(object, name);
    if (!value.has_value()) value = Value();
    return *std::any_cast<Value>(&value);
}

/// Nothing for nil.
std::string bytesOf(NSString* text);
NSString* textOf(const std::string& bytes);

/// A copy of the block, kept for as long as the result.
template <class Result, class... Arguments>
std::function<Result(Arguments...)> kept(Result (^block)(Arguments...)) {
    Result (^copy)(Arguments...) = Block_copy(block);
    const std::shared_ptr<const void> owner(static_cast<const void*>(copy),
                                            [](const void* owned) { _Block_release(owned); });
    return [owner](Arguments... arguments) {
        const auto called = (Result(^)(Arguments...))owner.get();
        return called(arguments...);
    };
}

/// Ends every object that was made.
void disposeOfObjects();

} // namespace vesko::testing
