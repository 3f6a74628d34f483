// The system's own language model behind OnDeviceModel.h, which is the contract of every function here. Written after
// Apple's public documentation of the FoundationModels framework (macOS 26). It has never been compiled: there was no
// Mac at hand. Where the compiler does not know the framework this file is left out, and the model is unavailable.
import Foundation
import FoundationModels

/// The form of an answer, as the adapter tells it.
private struct AnswerForm: Decodable {
    struct Choices: Decodable {
        let name: String
        let words: [String]
    }
    struct Property: Decodable {
        let name: String
        let description: String?
        let choices: Choices?
        let optional: Bool?
    }
    let name: String
    let entryName: String
    let properties: [Property]

    @available(macOS 26.0, *)
    func schema() throws -> GenerationSchema {
        let entry = DynamicGenerationSchema(
            name: entryName,
            properties: properties.map { property in
                DynamicGenerationSchema.Property(
                    name: property.name, description: property.description,
                    schema: property.choices.map { DynamicGenerationSchema(referenceTo: $0.name) }
                        ?? DynamicGenerationSchema(type: String.self),
                    isOptional: property.optional ?? false)
            })
        var choices: [String: DynamicGenerationSchema] = [:]
        for one in properties.compactMap(\.choices) {
            choices[one.name] = DynamicGenerationSchema(name: one.name, anyOf: one.words)
        }
        let root = DynamicGenerationSchema(
            name: name,
            properties: [
                DynamicGenerationSchema.Property(
                    name: "entries",
                    schema: DynamicGenerationSchema(arrayOf: DynamicGenerationSchema(referenceTo: entryName)))
            ])
        return try GenerationSchema(root: root, dependencies: [entry] + choices.values)
    }
}

/// Hands an answer to its receiver, once.
private struct Receiver: @unchecked Sendable {
    let answered: @convention(c) (UnsafeMutableRawPointer?, UnsafePointer<CChar>?) -> Void
    let receiver: UnsafeMutableRawPointer?

    func hear(_ json: String?) {
        guard let json else { return answered(receiver, nil) }
        json.withCString { answered(receiver, $0) }
    }
}

/// What a pointer to an OnDeviceSession shows. Where the system is older than the framework it knows no session.
private final class Conversation {
    private var session: Any?
    private var question: Task<Void, Never>?

    init(instructions: String) {
        if #available(macOS 26.0, *) {
            session = LanguageModelSession(model: SystemLanguageModel.default, tools: [], instructions: instructions)
        }
    }

    func prewarm() {
        if #available(macOS 26.0, *) { (session as? LanguageModelSession)?.prewarm() }
    }

    func respond(to prompt: String, form: Data, options: OnDeviceOptions, receiver: Receiver) {
        guard #available(macOS 26.0, *), let session = session as? LanguageModelSession else {
            return receiver.hear(nil)
        }
        let chosen = GenerationOptions(
            sampling: nil, temperature: options.hasTemperature ? options.temperature : nil,
            maximumResponseTokens: options.hasMaximumResponseTokens ? Int(options.maximumResponseTokens) : nil)
        let includesSchema = options.includesSchemaInPrompt
        question = Task.detached {
            do {
                let schema = try JSONDecoder().decode(AnswerForm.self, from: form).schema()
                let response = try await session.respond(
                    to: prompt, schema: schema, includeSchemaInPrompt: includesSchema, options: chosen)
                receiver.hear(response.content.jsonString)
            } catch {
                receiver.hear(nil)
            }
        }
    }

    func cancel() { question?.cancel() }
}

private func conversation(_ session: OpaquePointer) -> Conversation {
    Unmanaged<Conversation>.fromOpaque(UnsafeRawPointer(session)).takeUnretainedValue()
}

@_cdecl("onDeviceModelIsAvailable")
public func onDeviceModelIsAvailable() -> Bool {
    guard #available(macOS 26.0, *) else { return false }
    if case .available = SystemLanguageModel.default.availability { return true }
    return false
}

@_cdecl("onDeviceSessionMake")
public func onDeviceSessionMake(_ instructions: UnsafePointer<CChar>) -> OpaquePointer {
    let made = Conversation(instructions: String(cString: instructions))
    return OpaquePointer(Unmanaged.passRetained(made).toOpaque())
}

@_cdecl("onDeviceSessionPrewarm")
public func onDeviceSessionPrewarm(_ session: OpaquePointer) {
    conversation(session).prewarm()
}

@_cdecl("onDeviceSessionRespond")
public func onDeviceSessionRespond(
    _ session: OpaquePointer, _ prompt: UnsafePointer<CChar>, _ schema: UnsafePointer<CChar>,
    _ options: OnDeviceOptions,
    _ answered: @escaping @convention(c) (UnsafeMutableRawPointer?, UnsafePointer<CChar>?) -> Void,
    _ receiver: UnsafeMutableRawPointer?
) {
    conversation(session).respond(
        to: String(cString: prompt), form: Data(String(cString: schema).utf8), options: options,
        receiver: Receiver(answered: answered, receiver: receiver))
}

@_cdecl("onDeviceSessionCancel")
public func onDeviceSessionCancel(_ session: OpaquePointer) {
    conversation(session).cancel()
}

@_cdecl("onDeviceSessionFree")
public func onDeviceSessionFree(_ session: OpaquePointer) {
    conversation(session).cancel()
    Unmanaged<Conversation>.fromOpaque(UnsafeRawPointer(session)).release()
}
