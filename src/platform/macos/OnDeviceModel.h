// What the Swift source behind this header offers, in plain C, since C++ cannot call the framework of the
// system's language model itself. Nothing else may know this header but its adapter.
#pragma once
#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Whether the model would answer now. Quick.
bool onDeviceModelIsAvailable(void);

/// One conversation. May be used from one thread at a time.
typedef struct OnDeviceSession OnDeviceSession;

/// A conversation that knows these instructions (UTF-8), without tools. Never NULL.
OnDeviceSession* onDeviceSessionMake(const char* instructions);
/// Lets the model get ready. Returns at once.
void onDeviceSessionPrewarm(OnDeviceSession* session);

/// How to answer.
typedef struct OnDeviceOptions {
    bool includesSchemaInPrompt;
    bool hasTemperature;
    double temperature;
    bool hasMaximumResponseTokens;
    int64_t maximumResponseTokens;
} OnDeviceOptions;

/// Hears an answer: a JSON document in UTF-8 that lasts for the call, or NULL where there is none.
typedef void (*OnDeviceAnswered)(void* receiver, const char* json);

/// Asks. `schema` says in JSON what the answer has to look like:
///     {"name": "...", "entryName": "...", "properties":
///         [{"name": "...", "description": "...", "choices": {"name": "...", "words": ["..."]}, "optional":
///         true}]}
/// `description` and `choices` may be missing. The answer has one list, "entries", of such entries.
/// `answered` is called exactly once, on any thread, also when the question was cancelled or its session
/// freed, perhaps before this returns. One question a session.
void onDeviceSessionRespond(OnDeviceSession* session, const char* prompt, const char* schema,
                            OnDeviceOptions options, OnDeviceAnswered answered, void* receiver);
/// Gives the question up; its receiver hears so soon.
void onDeviceSessionCancel(OnDeviceSession* session);
/// Cancels, and lets the session go.
void onDeviceSessionFree(OnDeviceSession* session);

#ifdef __cplusplus
}
#endif
