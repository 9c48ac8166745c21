#include <algorithm>
#include <sstream>

#include "tools/common/reference.h"

namespace tools {

namespace {

using Options = std::vector<OptionEntry>;

std::string heading(const Reference& reference, const char* shell) {
    return "# Completion of " + reference.program + " in " + shell + ", made from its table of options.\n";
}

// A text in single quotes; `escape` represents a quote within.
std::string quoted(const std::string& text, const std::string& escape) {
    std::string result = "'";
    for (const char c : text) result += c == '\'' ? escape : std::string(1, c);
    return result + "'";
}

// A valid name for a shell function.
std::string functionName(const Reference& reference) {
    std::string name = "_" + reference.program;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

Options optionsOf(const Reference& reference, const CommandEntry& command) {
    Options options = command.options;
    if (!command.name.empty()) {
        options.insert(options.end(), reference.everywhere.begin(), reference.everywhere.end());
    }
    return options;
}

std::string words(const std::vector<CommandEntry>& commands, const char* separator) {
    std::vector<std::string> names;
    for (const CommandEntry& command : commands) names.push_back(command.name);
    return CLI::detail::join(names, separator);
}

// ---- bash

// What is completed, after which option and in which command.
constexpr const char* bashWords = R"(() {
    local current=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    local command= word words= options= kind=
    # "--option=value" comes as three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $option == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
)";

constexpr const char* bashAnswer = R"(            if [[ $current == -* || (-n $command && -z $kind) ]]; then
                words=$options kind=
            elif [[ -z $command ]]; then
                words=$commands
            fi ;;
    esac
    # Names are completed as those of files, but for a call outside a completion, where there is nothing to set.
    [[ -z $kind ]] || compopt -o filenames 2>/dev/null
    case $kind in
        file) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
        directory) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
        *) mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current") ;;
    esac
}
)";

const char* bashKind(ValueKind kind) {
    return kind == ValueKind::file ? "kind=file" : kind == ValueKind::folder ? "kind=directory" : "kind=none";
}

void addBashValue(std::ostringstream& script, const std::string& command, const OptionEntry& option) {
    script << "        ";
    for (std::size_t i = 0; i < option.names.size(); ++i) {
        script << (i == 0 ? "" : " | ") << command << ':' << option.names[i];
    }
    if (option.kind == ValueKind::choice) {
        script << ") words='" << CLI::detail::join(option.choices, " ") << "' ;;\n";
    } else {
        script << ") " << bashKind(option.kind) << " ;;\n";
    }
}

void addBashCommand(std::ostringstream& script, const Reference& reference, const CommandEntry& command) {
    script << "                '" << command.name << "') options='";
    for (const OptionEntry& option : optionsOf(reference, command)) {
        script << CLI::detail::join(option.names, " ") << ' ';
    }
    script << "'";
    if (!command.positionals.empty()) script << ' ' << bashKind(command.positionals.front().kind);
    script << " ;;\n";
}

// ---- zsh

// Brackets and colons are special in descriptions of zsh's _arguments.
std::string zshText(const std::string& text) {
    std::string result;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') result += '\\';
        result += c;
    }
    return result;
}

std::string zshValue(const OptionEntry& option) {
    switch (option.kind) {
        case ValueKind::none:
            return "";
        case ValueKind::text:
            return ":" + option.valueName + ": ";
        case ValueKind::choice:
            return ":" + option.valueName + ":(" + CLI::detail::join(option.choices, " ") + ")";
        case ValueKind::file:
            return ":" + option.valueName + ":_files";
        case ValueKind::folder:
            return ":" + option.valueName + ":_files -/";
    }
    return "";
}

void addZshOptions(std::ostringstream& script, const Options& options, const std::string& indent) {
    for (const OptionEntry& option : options) {
        // One line per name; the other names are not offered after it.
        const std::string names = "(" + CLI::detail::join(option.names, " ") + ")";
        for (const std::string& name : option.names) {
            std::string entry = names + name;
            // "=" and "+": the value may be part of the same word.
            if (option.kind != ValueKind::none) entry += name.starts_with("--") ? "=" : "+";
            entry += "[" + zshText(option.description) + "]";
            entry += zshValue(option);
            script << indent << quoted(entry, "'\\''") << " \\\n";
        }
    }
}

void addZshCommand(std::ostringstream& script, const Reference& reference, const CommandEntry& command) {
    script << "        " << command.name << ")\n            _arguments \\\n";
    addZshOptions(script, optionsOf(reference, command), "                ");
    for (std::size_t i = 0; i < command.positionals.size(); ++i) {
        const OptionEntry& positional = command.positionals[i];
        const bool repeats = positional.usage.find("...") != std::string::npos;
        script << "                '" << (repeats ? "*" : std::to_string(i + 1)) << zshValue(positional)
               << "' \\\n";
    }
    script << "            ;;\n";
}

// ---- fish

std::string fishText(const std::string& text) {
    return quoted(text, "\\'");
}

// Options of the program are also offered with its commands.
bool isCommon(const Reference& reference, const OptionEntry& option) {
    const Options& common = reference.common.options;
    return std::any_of(common.begin(), common.end(),
                       [&](const OptionEntry& other) { return other.names == option.names; });
}

void addFishOption(std::ostringstream& script, const std::string& start, const OptionEntry& option) {
    script << start;
    for (const std::string& name : option.names) {
        script << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
    }
    switch (option.kind) {
        case ValueKind::none:
            break;
        case ValueKind::text:
            script << " -x";
            break;
        case ValueKind::choice:
            script << " -x -a '" << CLI::detail::join(option.choices, " ") << "'";
            break;
        case ValueKind::file:
            script << " -r -F";
            break;
        case ValueKind::folder:
            script << " -x -a '(__fish_complete_directories)'";
            break;
    }
    script << " -d " << fishText(option.description) << '\n';
}

}  // namespace

std::string bashCompletion(const Reference& reference) {
    const std::string name = functionName(reference);
    std::ostringstream script;
    script << heading(reference, "bash") << name << bashWords << "        case $word in "
           << words(reference.commands, " | ") << ") command=$word; break ;; esac\n"
           << "    done\n    case $command:$option in\n";
    for (const CommandEntry& command : reference.commands) {
        for (const OptionEntry& option : command.options) {
            if (option.kind != ValueKind::none) addBashValue(script, command.name, option);
        }
    }
    script << "        *)\n            case $command in\n";
    addBashCommand(script, reference, reference.common);
    for (const CommandEntry& command : reference.commands) addBashCommand(script, reference, command);
    script << "            esac\n            local commands='" << words(reference.commands, " ") << "'\n"
           << bashAnswer << "complete -F " << name << ' ' << reference.program << '\n';
    return script.str();
}

std::string zshCompletion(const Reference& reference) {
    const std::string name = functionName(reference);
    std::ostringstream script;
    script << "#compdef " << reference.program << '\n'
           << heading(reference, "zsh") << name << "() {\n"
           << "    local curcontext=$curcontext state line\n    local -A opt_args\n    local -a commands=(\n";
    for (const CommandEntry& command : reference.commands) {
        script << "        " << quoted(command.name + ":" + command.description, "'\\''") << '\n';
    }
    script << "    )\n    _arguments -C \\\n";
    addZshOptions(script, reference.common.options, "        ");
    script << "        '1: :->command' '*:: :->argument'\n"
              "    case $state in\n"
              "        command) _describe command commands; return ;;\n"
              "        argument) ;;\n"
              "        *) return ;;\n"
              "    esac\n"
              "    case $line[1] in\n";
    for (const CommandEntry& command : reference.commands) addZshCommand(script, reference, command);
    script << "    esac\n}\n" << name << " \"$@\"\n";
    return script.str();
}

std::string fishCompletion(const Reference& reference) {
    std::ostringstream script;
    const std::string start = "complete -c " + reference.program;
    script << heading(reference, "fish") << start << " -f\n";
    for (const OptionEntry& option : reference.common.options) addFishOption(script, start, option);
    for (const CommandEntry& command : reference.commands) {
        script << start << " -n __fish_use_subcommand -a " << command.name << " -d "
               << fishText(command.description) << '\n';
        const std::string seen = start + " -n '__fish_seen_subcommand_from " + command.name + "'";
        for (const OptionEntry& option : command.options) {
            if (!isCommon(reference, option)) addFishOption(script, seen, option);
        }
        if (!command.positionals.empty()) script << seen << " -F\n";
    }
    return script.str();
}

}  // namespace tools
