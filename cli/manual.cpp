// Formats roff and bash from the options and descriptions of CLI11.
#include "cli/manual.h"

#include <sstream>
#include <string_view>
#include <vector>

#include "orvanel/orvanel.h"

namespace orvanel::cli {
namespace {

// Escapes text that roff must print unchanged.
std::string Escaped(std::string_view text) {
  std::string escaped;
  bool lineStart = true;
  for (const char c : text) {
    if (lineStart && (c == '.' || c == '\'')) escaped += "\\&";
    if (c == '\\') {
      escaped += "\\e";
    } else if (c == '-') {
      escaped += "\\-";
    } else if (c == '\'') {
      escaped += "\\(aq";
    } else {
      escaped += c;
    }
    lineStart = c == '\n';
  }
  return escaped;
}

// "-o, --output FOLDER".
std::string Heading(const CLI::Option& option) {
  std::string heading;
  for (const std::string& name : option.get_snames()) heading += (heading.empty() ? "-" : ", -") + name;
  for (const std::string& name : option.get_lnames()) heading += (heading.empty() ? "--" : ", --") + name;
  if (heading.empty()) return option.get_name();
  if (option.get_items_expected_max() > 0) heading += " " + option.get_type_name();
  return heading;
}

std::string Description(const CLI::Option& option) {
  const std::string usual = option.get_default_str();
  return option.get_description() + (usual.empty() ? "" : "; default " + usual);
}

std::string Entry(const std::string& heading, const std::string& description) {
  return ".TP\n.B " + Escaped(heading) + "\n" + Escaped(description) + "\n";
}

// All options, each after a blank.
std::string Names(const CLI::App& app) {
  std::string words;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_snames()) words += " -" + name;
    for (const std::string& name : option->get_lnames()) words += " --" + name;
  }
  return words;
}

// The paragraphs of the footer; its examples get their own heading.
std::string Notes(const std::string& footer) {
  const std::size_t examples = footer.find("Examples:\n");
  std::string page = ".SH NOTES\n.nf\n" + Escaped(footer.substr(0, examples)) + ".fi\n";
  if (examples == std::string::npos) return page;
  return page + ".SH EXAMPLES\n.nf\n" + Escaped(footer.substr(footer.find('\n', examples) + 1)) + "\n.fi\n";
}

// The words that an option accepts, if its description ends in a list of them: "Unit: mm, um, nm, waves". A default may
// follow: "Which planes: wavefront, psf, mtf [psf,mtf]".
std::string WordsTaken(const CLI::Option& option) {
  const std::string& description = option.get_description();
  const std::size_t colon = description.rfind(": ");
  const std::string type = option.get_type_name();
  if (type == "OD|OS") return "OD OS";
  if ((type != "WORD" && type != "NAME" && type != "LIST") || colon == std::string::npos) return {};
  std::string words;
  for (const char c : description.substr(colon + 2, description.find(" [", colon) - colon - 2)) {
    if (c != ',') words += c;
  }
  return words;
}

}  // namespace

std::string ManualName(const CLI::App& app, const CLI::App* parent) {
  return (parent == nullptr ? "" : parent->get_name() + "-") + app.get_name();
}

std::string ManualPage(const CLI::App& app, const CLI::App* parent) {
  const std::string name = ManualName(app, parent);
  const std::string command = (parent == nullptr ? "" : parent->get_name() + " ") + app.get_name();
  std::ostringstream page;
  page << ".TH \"" << Escaped(name) << "\" 1 \"\" \""
       << "orvanel " ORVANEL_VERSION << "\" \"Orvanel\"\n"
       << ".SH NAME\n"
       << Escaped(name) << " \\- " << Escaped(app.get_description()) << "\n"
       << ".SH SYNOPSIS\n.B " << Escaped(command) << "\n";
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) page << ".I " << Escaped(option->get_name(true)) << "\n";
  }
  page << "[options]" << (parent == nullptr ? " subcommand" : "") << "\n.SH OPTIONS\n";
  for (const std::string& group : app.get_groups()) {
    if (group != "Options") page << ".SS " << Escaped(group) << "\n";
    for (const CLI::Option* option : app.get_options()) {
      if (option->get_group() == group) page << Entry(Heading(*option), Description(*option));
    }
  }
  const auto subcommands = app.get_subcommands({});
  if (!subcommands.empty()) page << ".SH SUBCOMMANDS\n";
  for (const CLI::App* subcommand : subcommands) {
    page << Entry(subcommand->get_name(), subcommand->get_description());
  }
  return page.str() + Notes(app.get_footer());
}

std::string BashCompletion(const CLI::App& program, const std::map<std::string, std::string>& words) {
  std::string subcommands, cases, wordCases;
  for (const CLI::App* subcommand : program.get_subcommands({})) {
    subcommands += " " + subcommand->get_name();
    cases += "    " + subcommand->get_name() + ") options='" + Names(*subcommand).substr(1) + "' ;;\n";
    for (const CLI::Option* option : subcommand->get_options()) {
      const bool list = option->get_type_name() == "LIST";
      for (const std::string& name : option->get_lnames()) {
        auto listed = words.find(subcommand->get_name() + ":--" + name);
        if (listed == words.end()) listed = words.find("--" + name);
        const std::string taken = listed == words.end() ? WordsTaken(*option) : listed->second;
        if (taken.empty()) continue;
        wordCases += "    " + subcommand->get_name() + ":--" + name + ") words='" + taken + "'" +
                     (list ? " list=1" : "") + " ;;\n";
      }
    }
  }
  constexpr const char* kBeginning = R"(# Completion of orvanel for bash, made from the program's definition.
_orvanel() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} options='' words='' list=''
  # --option=value comes as three words.
  if [ "$current" = = ]; then
    current=''
  elif [ "$previous" = = ] && [ "$COMP_CWORD" -gt 2 ]; then
    previous=${COMP_WORDS[COMP_CWORD-2]}
  fi
)";
  constexpr const char* kEnd = R"(  if [ -n "$list" ]; then
    # Behind the last comma, what is not in the list yet.
    local last=${current##*,} word rest=''
    for word in $words; do
      [[ ,${current%"$last"} == *,$word,* ]] || rest+=" $word"
    done
    mapfile -t COMPREPLY < <(compgen -P "${current%"$last"}" -W "$rest" -- "$last")
    compopt -o nospace 2>/dev/null
  elif [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  elif [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -o filenames -F _orvanel orvanel
)";
  return std::string(kBeginning) + "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n    mapfile -t COMPREPLY < <(compgen -W '" +
         Names(program).substr(1) + subcommands +
         "' -- \"$current\")\n    return\n  fi\n  case ${COMP_WORDS[1]}:$previous in\n" + wordCases +
         "  esac\n  case ${COMP_WORDS[1]} in\n" + cases + "  esac\n" + kEnd;
}

}  // namespace orvanel::cli
