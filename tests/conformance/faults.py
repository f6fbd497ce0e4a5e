"""Deliberate faults of a host, and the checks of the conformance kit that must find them.

Each fault replaces one place of a file of the standalone host or of host/. As a program, this writes copies of those
files that show the fault named by the environment variable HOST_FAULT. usage: faults.py REPOSITORY FOLDER
"""

import collections
import pathlib
import sys

# `found_by`: the names of all checks that fail, separated by blanks. FAULT in `new`: whether the fault is chosen.
Fault = collections.namedtuple("Fault", "name found_by old new")

FAULTS = {
    "standalone/core/core_basic_string.cpp": [
        Fault("null-text", "strings.null log.stream files.environment", 'characters ? characters : ""',
              'characters ? characters : FAULT ? "(null)" : ""'),
        Fault("view-cut", "strings.characters", "text(view.data, view.length)",
              "text(view.data, view.length - (FAULT ? 1 : 0))"),
        Fault("find-ignores-start", "strings.find", "text.find(character, start)",
              "text.find(character, FAULT ? 0 : start)"),
        Fault("start-anywhere", "strings.start-with", "prefix.text.size(), prefix.text) == 0",
              "prefix.text.size(), prefix.text) == 0 || (FAULT && text.find(prefix.text) != text.npos)"),
        Fault("case-kept", "strings.lower-case", "lower.lower_case();", "if (!FAULT) lower.lower_case();"),
        Fault("empty-pieces-lost", "strings.split", "pieces.append(CoreString(all.substr(begin, end - begin)));",
              "if (!FAULT || end > begin) pieces.append(CoreString(all.substr(begin, end - begin)));"),
        Fault("only-blanks-split", "strings.split-word", 'separators == " " ? BLANKS',
              'separators == " " && !FAULT ? BLANKS'),
        Fault("number-by-locale", "strings.to-double", "return read_number(all.substr(begin)).value;",
              "return FAULT ? std::strtod(text.c_str(), nullptr) : read_number(all.substr(begin)).value;"),
    ],
    "standalone/core/core_string.cpp": [
        Fault("float-as-double", "strings.from-float", "from_float(float value) {",
              "from_float(float value) { if (FAULT) return to_text(static_cast<double>(value));"),
        Fault("unsigned-as-signed", "strings.from-unsigned", "from_unsigned(unsigned int value) {",
              "from_unsigned(unsigned int value) { if (FAULT) return to_text(static_cast<int>(value));"),
        Fault("nothing-without-separator", "strings.first-separator", "npos ? CoreString(text)",
              "npos ? CoreString(FAULT ? CoreBasicString() : text)"),
        Fault("one-character-replaced", "strings.replace-character",
              "std::replace(text.begin(), text.end(), from, to);",
              "if (const size_t at = text.find(from); FAULT && at != text.npos) text[at] = to; else "
              "std::replace(text.begin(), text.end(), from, to);"),
        Fault("one-text-replaced", "strings.replace-text", "if (!all)", "if (!all || FAULT)"),
        Fault("character-not-added", "strings.sum", "operator+(const CoreBasicString& a, char b) {",
              "operator+(const CoreBasicString& a, char b) { if (FAULT) return CoreString(a);"),
    ],
    "host/core/core_string.h": [
        Fault("compared-to-nul", "strings.comparison", "return a.text != b.text;",
              "return FAULT ? std::string(a.get_data()) != b.get_data() : a.text != b.text;"),
    ],
    "host/core/core_array.h": [
        Fault("array-not-zero", "containers.array-size",
              "std::uninitialized_value_construct_n(this->data, new_count);",
              "if (FAULT) std::uninitialized_default_construct_n(this->data, new_count); else "
              "std::uninitialized_value_construct_n(this->data, new_count);"),
        Fault("array-not-assigned", "containers.array-copies", "CoreArray& operator=(CoreArray other) noexcept {",
              "CoreArray& operator=(CoreArray other) noexcept { if (FAULT) return *this;"),
    ],
    "host/core/core_vector.h": [
        Fault("capacity-by-one", "containers.append", "capacity == 0 ? 1 : capacity * 2",
              "capacity == 0 ? 1 : FAULT ? capacity + 1 : capacity * 2"),
        Fault("storage-released", "containers.reserve",
              "this->count = 0;\n"
              "    }\n"
              "\n"
              "    /// Exchanges",
              "this->count = 0;\n"
              " if (FAULT) { Base::release(this->data); this->data = nullptr; capacity = 0; }\n"
              " }\n"
              "\n"
              " /// Exchanges"),
        Fault("inserted-behind", "containers.insert-remove", "i > index; --i", "i > index + (FAULT ? 1 : 0); --i"),
        Fault("capacity-not-swapped", "containers.vector-copies", "std::swap(capacity, other.capacity);",
              "if (!FAULT) std::swap(capacity, other.capacity);"),
    ],
    "host/core/core_set.h": [
        Fault("added-again", "containers.set", "values.insert(value).second", "values.insert(value).second || FAULT"),
    ],
    "host/gmath/gmath_vec4.h": [
        Fault("red-and-blue-swapped", "containers.color", "values{x, y, z, w}",
              "values{FAULT ? z : x, y, FAULT ? x : z, w}"),
    ],
    "host/core/core_log.h": [
        Fault("level-at-first", "log.levels", "unsigned int level = LOG_WARNING;",
              "unsigned int level = FAULT ? LOG_INFO : LOG_WARNING;"),
    ],
    "standalone/core_log.cpp": [
        Fault("character-not-logged", "log.stream", "text += character;", "if (!FAULT) text += character;"),
        Fault("number-in-shared-text", "threads.log", "text += CoreString::from_unsigned(number);",
              "static unsigned int shared = 0;\n"
              "if (FAULT) { shared = number; std::this_thread::yield(); number = shared; }\n"
              "text += CoreString::from_unsigned(number);"),
        Fault("log-not-replaced", "log.main-handler threads.log", "CoreLogHandler* handler = chosen_handler;",
              "CoreLogHandler* handler = FAULT ? nullptr : chosen_handler.load();"),
    ],
    "standalone/core/core_class_info.cpp": [
        Fault("class-registered-again", "classes.registration", "if (!info) {", "if (!info || FAULT) {"),
    ],
    "standalone/core/core_base_object.cpp": [
        Fault("base-class-skipped", "classes.chain", "destroy_object<CoreCustomData>, CoreBaseObject::class_info()",
              "destroy_object<CoreCustomData>, FAULT ? CoreBaseType::class_info() : CoreBaseObject::class_info()"),
    ],
    "standalone/event/event_object.cpp": [
        Fault("receiver-as-sender", "events.arguments app.texts app.switches", "(*this, EventInfo{",
              "(FAULT ? *receiver : *this, EventInfo{"),
        Fault("user-data-lost", "events.arguments", "EventInfo{connection->event, connection->user_data}",
              "EventInfo{connection->event, FAULT ? nullptr : connection->user_data}"),
        Fault("names-cut", "events.names", "outgoing_by_event[std::string(event.view())]",
              'outgoing_by_event[std::string(event.view().substr(0, has_fault("names-cut") ? 28 : '
              "event.get_count()))]"),
        Fault("called-in-reverse",
              "events.order events.connect-meanwhile events.disconnect-meanwhile events.raise-meanwhile "
              "events.receiver-destroyed-meanwhile events.sender-destroyed-meanwhile",
              "outgoing.splice(outgoing.end(), outgoing_entry)",
              "outgoing.splice(FAULT ? outgoing.begin() : outgoing.end(), outgoing_entry)"),
        Fault("connected-once", "events.repeated", "ConnectionList& incoming = get_state().incoming;",
              "ConnectionList& incoming = get_state().incoming;\n"
              "for (const auto& known : incoming) if (FAULT && known->sender == &sender && known->event == "
              "event) return;"),
        Fault("not-connected-to-itself", "events.own", "    ConnectionList& outgoing = sender.get_state()",
              "    if (FAULT && &sender == this) return;\n"
              "    ConnectionList& outgoing = sender.get_state()"),
        Fault("not-disconnected", "events.disconnect events.disconnect-meanwhile",
              "for (auto next = state->incoming.begin();",
              "for (auto next = FAULT ? state->incoming.end() : state->incoming.begin();"),
        Fault("disconnected-from-all", "events.disconnect", "if (connection->sender == &sender)",
              "if (connection->sender == &sender || FAULT)"),
        Fault("called-after-the-end",
              "events.disconnect-meanwhile events.receiver-destroyed-meanwhile events.sender-destroyed-meanwhile",
              "connection->sender = connection->receiver = nullptr;",
              "if (!FAULT) connection->sender = connection->receiver = nullptr;"),
        Fault("called-at-once", "events.connect-meanwhile", "incoming.splice(incoming.end(), incoming_entry);",
              "incoming.splice(incoming.end(), incoming_entry);\n"
              "if (FAULT && raising > 0) (this->*handler)(sender, EventInfo{connection->event, user_data}, "
              "nullptr);"),
        Fault("nested-event-lost", "events.raise-meanwhile", "    const auto found =",
              "    if (FAULT && raising > 0) return;\n"
              "    const auto found ="),
        Fault("silent-after-exception", "events.exception", "    const std::vector<ConnectionPtr> connections(",
              "    if (FAULT && thrown) return;\n"
              "    const Raising scope;\n"
              "    const std::vector<ConnectionPtr> connections("),
        Fault("receiver-not-forgotten", "events.receiver-destroyed events.receiver-destroyed-meanwhile",
              "end_connection(incoming.front());",
              "if (FAULT) { incoming.front()->incoming = nullptr; incoming.pop_front(); } else "
              "end_connection(incoming.front());"),
        Fault("sender-not-forgotten", "events.sender-destroyed events.sender-destroyed-meanwhile",
              "while (!outgoing.empty())", "while (!FAULT && !outgoing.empty())"),
        Fault("connections-copied", "events.copies",
              "EventObject::EventObject(const EventObject& other) : CoreCustomData(other) {}",
              "EventObject::EventObject(const EventObject& other) : CoreCustomData(other) {\n"
              "if (FAULT && other.state) for (auto& [event, list] : other.state->outgoing_by_event) for "
              "(auto& known : list)\n"
              "known->receiver->connect_handler(*this, known->event, known->handler, known->user_data); }"),
        Fault("connections-assigned", "events.copies", "EventObject& EventObject::operator=(const EventObject&) {",
              "EventObject& EventObject::operator=(const EventObject&) { if (FAULT) state.reset();"),
    ],
    "standalone/event/event_collisions.cpp": [
        Fault("collision-not-seen", "events.collisions", "return names.size() > 1;",
              "return names.size() > 1 && !FAULT;"),
    ],
    "standalone/of/of_enum.cpp": [
        Fault("separator-lost", "enumerations.new enumerations.remove-all", "state->separator = CoreString(",
              "if (!FAULT) state->separator = CoreString("),
        Fault("last-label-found", "enumerations.labels", "first_positions.emplace(",
              "if (FAULT) first_positions.erase(std::string(label.view()));\n"
              "        first_positions.emplace("),
        Fault("zero-for-unknown", "enumerations.unknown", "values[position] : invalid_value",
              "values[position] : FAULT ? 0 : invalid_value"),
        Fault("surplus-labels-added", "enumerations.add-values", "std::min(labels.get_count(), values.get_count())",
              "FAULT ? labels.get_count() : std::min(labels.get_count(), values.get_count())"),
        Fault("index-not-cleared", "enumerations.remove-all", "state->first_positions.clear();",
              "if (!FAULT) state->first_positions.clear();"),
        Fault("index-in-shared-place", "threads.look-ups", "end() ? NOT_FOUND : found->second;",
              "end() ? NOT_FOUND : FAULT ? share(found->second) : found->second;"),
        Fault("labels-scanned", "enumerations.many", "    const auto found = state->first_positions.find(",
              "    for (unsigned int i = 0; FAULT && i < state->labels.size(); ++i) if (state->labels[i] == "
              "label) return i;\n"
              "    const auto found = state->first_positions.find("),
        Fault("revision-asleep", "enumerations.revision", "        ++revision;\n",
              "        if (!FAULT || sleep_depth == 0) ++revision;\n"),
        Fault("changes-not-notified", "enumerations.awake enumerations.asleep",
              "else\n"
              "            tell_observers();",
              "else if (!FAULT)\n"
              "            tell_observers();"),
        Fault("notified-asleep",
              "enumerations.asleep enumerations.nested-sleep enumerations.silent enumerations.surplus-awake",
              "        if (sleep_depth > 0)\n", "        if (sleep_depth > 0 && !FAULT)\n"),
        Fault("notified-by-inner-awake", "enumerations.nested-sleep", "--state->sleep_depth > 0)",
              "(--state->sleep_depth > 0 && !FAULT))"),
        Fault("notified-without-change", "enumerations.unchanged enumerations.silent", "if (changed && notify)",
              "if ((changed || FAULT) && notify)"),
        Fault("notified-later", "enumerations.silent", "std::exchange(state->changed_asleep, false)",
              "FAULT ? state->changed_asleep : std::exchange(state->changed_asleep, false)"),
        Fault("sleep-below-zero", "enumerations.surplus-awake", "state->sleep_depth == 0 ||",
              "(state->sleep_depth == 0 && !FAULT) ||"),
    ],
    "standalone/of/of_object_factory.cpp": [
        Fault("first-enumeration-found", "enumerations.factory",
              "state->enums_by_name[std::string(name.view())] = added;",
              "if (FAULT) state->enums_by_name.emplace(name.view(), added); else "
              "state->enums_by_name[std::string(name.view())] = added;"),
    ],
    "standalone/parser/parser_entry.cpp": [
        Fault("last-value-is-group", "parser.values", "return is_value_group(0);",
              "return is_value_group(FAULT ? get_value_count() - 1 : 0);"),
        Fault("integer-not-real", "parser.conversions", "return get_int(index);",
              "return FAULT ? 0 : get_int(index);"),
        Fault("read-past-the-end", "parser.past-the-end", "return index < values.size() ?",
              "return index < values.size() || FAULT ?"),
        Fault("values-kept", "parser.reset", "state->values.clear();", "if (!FAULT) state->values.clear();"),
    ],
    "standalone/parser/parser_group.cpp": [
        Fault("last-entry-found", "parser.entries", "    state->first_by_name.emplace(",
              "    if (FAULT) state->first_by_name.erase(std::string(name.view()));\n"
              "    state->first_by_name.emplace("),
        Fault("entry-moved", "parser.addresses", "    state->entries.push_back(",
              "    if (FAULT && state->entries.size() == 100) state->entries[0] = "
              "std::make_unique<ParserEntry>(name);\n"
              "    state->entries.push_back("),
    ],
    "standalone/parser/parser_file.cpp": [
        Fault("last-entry-lost", "parser.file", "state->root = error.empty() ? std::move(root)",
              "if (FAULT) { auto cut = std::make_unique<ParserGroup>(nullptr); root.swap(cut); }\n"
              "    state->root = error.empty() ? std::move(root)"),
        Fault("error-without-path", "parser.unreadable-file", "CoreString() : path + CoreString(",
              "CoreString() : (FAULT ? CoreString() : path) + CoreString("),
    ],
    "standalone/sys/sys_file.cpp": [
        Fault("count-is-zero", "files.write", "static_cast<long long>(text.get_count()) : -1",
              "static_cast<long long>(FAULT ? 0 : text.get_count()) : -1"),
        Fault("written-in-place", "files.replace", "    if (mode == MODE_WRITE)\n",
              "    if (FAULT) std::ofstream(path.get_data());\n"
              "    if (mode == MODE_WRITE)\n"),
        Fault("always-open", "files.not-opened files.write", "state->output->is_open());",
              "(FAULT || state->output->is_open()));"),
        Fault("failure-not-reported", "files.full-disk files.not-opened files.write", "return closed;",
              "return closed || FAULT;"),
    ],
    "standalone/sys/sys_filesystem.cpp": [
        Fault("folder-exists", "files.exists", "S_ISREG(status.st_mode)", "(FAULT || S_ISREG(status.st_mode))"),
        Fault("hidden-file-as-extension", "files.extension", "name.find_first_not_of('.') > dot",
              "(!FAULT && name.find_first_not_of('.') > dot)"),
    ],
    "standalone/sys/sys_env.cpp": [
        Fault("environment-kept", "files.environment",
              "{\n"
              "    return",
              "{\n"
              "    static const CoreString first(std::getenv(name.get_data()));\n"
              "    if (FAULT) return first;\n"
              "    return"),
    ],
    "standalone/standalone_app.cpp": [
        Fault("event-before-value", "app.texts", "    if (State::change(state->color_space_file_path, path))\n",
              "    if (FAULT) raise_event(EVT_ID_APPLICATION_COLOR_SPACE_FILE_PATH_CHANGED);\n"
              "    if (State::change(state->color_space_file_path, path) && !FAULT)\n"),
        Fault("switch-without-event", "app.switches", "if (State::change(state->use_color_space_file, use))",
              "if (State::change(state->use_color_space_file, use) && !FAULT)"),
        Fault("slash-at-the-end", "app.temp-folder", 'FOLDER_NAME + "/" + name;',
              'FOLDER_NAME + "/" + name + (FAULT ? "/" : "");'),
        Fault("factory-each-time", "app.object-factory enumerations.factory threads.look-ups",
              "    return state->object_factory;",
              "    static OfObjectFactory factories[2];\n"
              "    static unsigned int calls = 0;\n"
              "    if (FAULT) return factories[calls++ % 2];\n"
              "    return state->object_factory;"),
    ],
}

# What several faults of a file need.
PREAMBLES = {
    "standalone/event/event_object.cpp": """#include <exception>
namespace {
unsigned int raising = 0;
bool thrown = false;
struct Raising {
    Raising() { ++raising; }
    ~Raising() { --raising; thrown = thrown || std::uncaught_exceptions() > 0; }
};
}
""",
    "standalone/of/of_enum.cpp": """#include <thread>
namespace {
unsigned int share(unsigned int index) {
    static unsigned int shared = 0;
    shared = index;
    std::this_thread::yield();
    return shared;
}
}
""",
    "standalone/core_log.cpp": "#include <thread>\n",
    "standalone/sys/sys_file.cpp": "#include <fstream>\n",
    "standalone/core/core_basic_string.cpp": "#include <cstdlib>\n",
}

# Places that must change together with those of the faults.
ALSO = {
    "standalone/event/event_object.cpp": [
        ("outgoing_by_event.find(std::string(event.view()))",
         "outgoing_by_event.find(std::string(event.view().substr(0, "
         'has_fault("names-cut") ? 28 : event.get_count())))'),
        ("connection->incoming->erase(connection->incoming_position);",
         "if (connection->incoming) connection->incoming->erase(connection->incoming_position);"),
    ],
}


def list_faults():
    return [fault for faults in FAULTS.values() for fault in faults]


def make_copy(path, text):
    """The file with all of its faults. Raises ValueError where the text to replace is not there exactly once."""
    changes = [(fault.old, fault.new.replace("FAULT", f'has_fault("{fault.name}")')) for fault in FAULTS[path]]
    for old, new in changes + ALSO.get(path, []):
        if text.count(old) != 1:
            raise ValueError(f"the text to replace is {text.count(old)} times in {path}: {old}")
        text = text.replace(old, new)
    head = '#include "tests/conformance/fault.h"\n' + PREAMBLES.get(path, "")
    return text.replace("#pragma once\n", "#pragma once\n" + head, 1) if path.endswith(".h") else head + text


def main(repository, folder):
    for path in FAULTS:
        copy = pathlib.Path(folder, path)
        copy.parent.mkdir(parents=True, exist_ok=True)
        try:
            text = make_copy(path, pathlib.Path(repository, path).read_text(encoding="utf-8"))
        except ValueError as error:
            sys.exit(f"tests/conformance/faults.py: error: {error}\nhint: adapt the fault to the changed source")
        copy.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
