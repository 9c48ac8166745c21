#include <cctype>
#include <sstream>

#include "tools/common/exit_code.h"
#include "tools/common/reference.h"

namespace tools {

namespace {

// Text that the formatter prints unchanged: special characters escaped, hyphens as ASCII.
std::string plain(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\\') {
            escaped += "\\e";
        } else if (c == '-') {
            escaped += "\\-";
        } else if ((c == '.' || c == '\'') && (escaped.empty() || escaped.back() == '\n')) {
            escaped += std::string("\\&") + c;
        } else {
            escaped += c;
        }
    }
    return escaped;
}

// "Packs files." in the form of a manual's name line: "packs files".
std::string asPhrase(std::string sentence) {
    sentence[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(sentence[0])));
    if (sentence.ends_with('.')) sentence.pop_back();
    return sentence;
}

void addOptions(std::ostringstream& page, const std::vector<OptionEntry>& options) {
    for (const OptionEntry& option : options) {
        page << ".TP\n\\fB" << plain(option.heading) << "\\fR\n" << plain(option.description) << ".\n";
    }
}

void addExamples(std::ostringstream& page, const std::string& examples) {
    page << ".PP\n.nf\n" << plain(examples) << ".fi\n";
}

}  // namespace

std::string manualPage(const Reference& reference) {
    std::ostringstream page;
    std::string title = reference.program;
    for (char& c : title) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    page << ".TH " << plain(title) << " 1 \"\" \"" << plain(reference.version) << "\" \"User commands\"\n";
    page << ".SH NAME\n"
         << plain(reference.program) << " \\- " << plain(asPhrase(reference.common.description)) << '\n';
    page << ".SH SYNOPSIS\n.nf\n";
    for (const CommandEntry& command : reference.commands) {
        page << "\\fB" << plain(reference.program + " " + command.name) << "\\fR [OPTIONS]";
        for (const OptionEntry& positional : command.positionals) page << ' ' << plain(positional.usage);
        page << '\n';
    }
    page << ".fi\n.SH DESCRIPTION\n" << plain(reference.common.description) << '\n';
    page << ".SH OPTIONS\n";
    addOptions(page, reference.common.options);
    page << ".SH COMMANDS\n";
    for (const CommandEntry& command : reference.commands) {
        page << ".SS " << plain(command.name) << '\n' << plain(command.description) << ".\n";
        addOptions(page, command.positionals);
        addOptions(page, command.options);
        addExamples(page, command.examples);
    }
    page << ".SH EXIT STATUS\n";
    for (const ExitCodeRow& row : exitCodes()) {
        page << ".TP\n" << static_cast<int>(row.code) << '\n' << plain(row.meaning) << '\n';
    }
    page << ".SH EXAMPLES\n";
    addExamples(page, reference.common.examples);
    return page.str();
}

}  // namespace tools
