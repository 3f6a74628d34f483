#include "Catalog.h"

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

namespace vesko::catalog {

namespace {

using Json = nlohmann::json;

/// Which argument (counted from 1) is shown as what: "@" or "lld".
using Placeholders = std::map<int, std::string>;

[[noreturn]] void refuse(const std::string& where, const std::string& why) {
    throw CatalogError(where + ": " + why);
}

/// The parser keeps the last of two equal keys, which would hide a text that was written twice.
Json parseWithoutRepeatedKeys(const std::string& text) {
    std::vector<std::set<std::string>> open;
    const auto watch = [&open](int, Json::parse_event_t event, Json& value) {
        if (event == Json::parse_event_t::object_start) open.emplace_back();
        if (event == Json::parse_event_t::object_end) open.pop_back();
        if (event == Json::parse_event_t::key && !open.back().insert(value.get<std::string>()).second)
            refuse(value.get<std::string>(), "the key stands there twice");
        return true;
    };
    try {
        return Json::parse(text, watch);
    } catch (const Json::exception& error) {
        throw CatalogError(error.what());
    }
}

const Json& field(const Json& object, const std::string& name, const std::string& where) {
    if (!object.is_object() || !object.contains(name)) refuse(where, "\"" + name + "\" is missing");
    return object.at(name);
}

void allowOnly(const Json& object, const std::set<std::string>& names, const std::string& where) {
    if (!object.is_object()) refuse(where, "an object is expected");
    for (const auto& [name, value] : object.items())
        if (!names.contains(name)) refuse(where, "\"" + name + "\" is not known here");
}

std::string textField(const Json& object, const std::string& name, const std::string& where) {
    const Json& value = field(object, name, where);
    if (!value.is_string()) refuse(where, "\"" + name + "\" is no text");
    return value.get<std::string>();
}

std::string unit(const Json& holder, const std::string& where) {
    const Json& unit = field(holder, "stringUnit", where);
    allowOnly(unit, {"state", "value"}, where);
    if (textField(unit, "state", where) != "translated") refuse(where, "not marked as translated");
    std::string value = textField(unit, "value", where);
    if (value.empty()) refuse(where, "the text is empty");
    return value;
}

TextForm plural(const Json& holder, const std::string& where) {
    const Json& variations = field(holder, "variations", where);
    allowOnly(variations, {"plural"}, where);
    const Json& forms = field(variations, "plural", where);
    allowOnly(forms, {"one", "other"}, where);
    allowOnly(field(forms, "one", where), {"stringUnit"}, where);
    allowOnly(field(forms, "other", where), {"stringUnit"}, where);
    return {unit(forms.at("one"), where + ", one"), unit(forms.at("other"), where + ", other")};
}

TextForm form(const Json& holder, const std::string& where) {
    if (!holder.contains("variations")) return {"", unit(holder, where)};
    if (holder.contains("stringUnit")) refuse(where, "both a single form and a plural");
    return plural(holder, where);
}

TextSubstitution substitution(const Json& value, const std::string& where) {
    allowOnly(value, {"argNum", "formatSpecifier", "variations"}, where);
    if (textField(value, "formatSpecifier", where) != "lld") refuse(where, "the format is not \"lld\"");
    const Json& number = field(value, "argNum", where);
    if (!number.is_number_integer() || number.get<int>() < 1) refuse(where, "\"argNum\" counts from 1");
    return {number.get<int>(), plural(value, where)};
}

LocalizedText localizedText(const Json& value, const std::string& where) {
    allowOnly(value, {"stringUnit", "variations", "substitutions"}, where);
    LocalizedText text{form(value, where), {}};
    if (!value.contains("substitutions")) return text;
    for (const auto& [name, item] : value.at("substitutions").items())
        text.substitutions.emplace(name, substitution(item, where + ", " + name));
    return text;
}

void note(Placeholders& found, int argument, const std::string& kind, const std::string& where) {
    const auto [at, added] = found.emplace(argument, kind);
    if (!added && at->second != kind) refuse(where, "one argument shown in two ways");
}

/// Reads the placeholders of `text`; those of a substitution are noted through `substitutions`.
Placeholders placeholders(const std::string& text, const LocalizedText* owner, const std::string& where) {
    Placeholders found;
    int next = 1;
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at)) {
        ++at;
        if (text.compare(at, 1, "%") == 0) {
            ++at;
            continue;
        }
        if (text.compare(at, 2, "#@") == 0) {
            const std::size_t end = text.find('@', at + 2);
            const std::string name = text.substr(at + 2, end - at - 2);
            if (end == std::string::npos || !owner || !owner->substitutions.contains(name))
                refuse(where, "no substitution is called \"" + name + "\"");
            note(found, owner->substitutions.at(name).argument, "lld", where);
            at = end + 1;
            continue;
        }
        std::size_t digits = at;
        while (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits]))) ++digits;
        const bool positional = digits > at && digits < text.size() && text[digits] == '$';
        const int argument = positional ? std::stoi(text.substr(at, digits - at)) : next++;
        if (positional) at = digits + 1;
        if (text.compare(at, 1, "@") == 0)
            note(found, argument, "@", where);
        else if (text.compare(at, 3, "lld") == 0)
            note(found, argument, "lld", where);
        else
            refuse(where, "a \"%\" that is no placeholder in \"" + text + "\"");
    }
    return found;
}

void checkSubstitutions(const LocalizedText& text, const std::string& where) {
    for (const auto& [name, item] : text.substitutions) {
        if (text.form.other.find("%#@" + name + "@") == std::string::npos)
            refuse(where, "the substitution \"" + name + "\" is not used");
        for (const std::string& form : {item.form.one, item.form.other}) {
            const std::size_t at = form.find("%arg");
            if (at == std::string::npos || form.find('%', at + 1) != std::string::npos)
                refuse(where, "the substitution \"" + name + "\" shows something else than its number");
        }
    }
}

Placeholders placeholdersOf(const LocalizedText& text, const std::string& where) {
    checkSubstitutions(text, where);
    const Placeholders other = placeholders(text.form.other, &text, where);
    if (!text.form.one.empty()) {
        if (placeholders(text.form.one, &text, where) != other)
            refuse(where, "the two forms show different arguments");
        if (std::ranges::none_of(other, [](const auto& item) { return item.second == "lld"; }))
            refuse(where, "a plural without a number");
    }
    return other;
}

void checkPlaceholders(const std::string& key, const CatalogText& text) {
    const Placeholders english = placeholdersOf(text.english, key + ", en");
    if (placeholdersOf(text.portuguese, key + ", pt-BR") != english)
        refuse(key, "the two languages show different arguments");
    const Placeholders named = placeholders(key, nullptr, key);
    if (!named.empty() && named != english) refuse(key, "the texts show other arguments than the key names");
}

CatalogText entry(const std::string& key, const Json& value) {
    allowOnly(value, {"comment", "extractionState", "localizations"}, key);
    const Json& localizations = field(value, "localizations", key);
    allowOnly(localizations, {"en", "pt-BR"}, key);
    CatalogText text{localizedText(field(localizations, "en", key), key + ", en"),
                     localizedText(field(localizations, "pt-BR", key), key + ", pt-BR")};
    checkPlaceholders(key, text);
    return text;
}

} // namespace

Catalog readCatalog(const std::string& json) {
    const Json document = parseWithoutRepeatedKeys(json);
    allowOnly(document, {"sourceLanguage", "strings", "version"}, "catalog");
    if (textField(document, "sourceLanguage", "catalog") != "en")
        refuse("catalog", "the source language is not English");
    Catalog catalog;
    const Json& strings = field(document, "strings", "catalog");
    if (!strings.is_object()) refuse("catalog", "\"strings\" is no object");
    for (const auto& [key, value] : strings.items()) catalog.emplace(key, entry(key, value));
    return catalog;
}

} // namespace vesko::catalog
