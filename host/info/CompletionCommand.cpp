#include "host/info/CompletionCommand.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "host/common/StandardOutput.h"

namespace tallyquist {
namespace {

constexpr std::string_view BEFORE_TABLE =
    R"sh(# Completes tallyquist in bash; made by "tallyquist completion bash".
# For zsh, run "autoload -U compinit bashcompinit && compinit && bashcompinit" before.

# The words that may stand at a place, FILE for files, nothing for texts. Places are: a command, for its options; a
# command with a number, for an argument; a command with an option, for the option's value. Fails for others.
_tallyquist_words() {
    case $1 in
)sh";

// It runs in the shells of Macs too, so there are no associative arrays, and compopt may be
// missing.
constexpr std::string_view AFTER_TABLE = R"sh(    *) return 1 ;;
    esac
}

_tallyquist() {
    local command=tallyquist option='' options=yes arguments=0 current=${COMP_WORDS[COMP_CWORD]} word words i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == [:=]* ]]; then # bash parts words there; what follows goes on with the word before
            [ -n "$option" ] || i=$((i + 1))
        elif [ -n "$option" ]; then
            option=''
        elif [[ -n $options && $word == -?* ]]; then
            [ "$word" != -- ] || options=''
            ! _tallyquist_words "$command $word" >/dev/null || option=$word
        elif [[ $arguments == 0 && " $(_tallyquist_words "$command 1") " == *" $word "* ]]; then
            command="$command $word"
        else
            arguments=$((arguments + 1))
        fi
    done
    if [[ $current == [:=]* ]]; then
        current=''
        [ -n "$option" ] || i=$((i + 1))
    fi
    if [ "$i" -gt "$COMP_CWORD" ]; then
        return
    elif [ -n "$option" ]; then
        words=$(_tallyquist_words "$command $option")
    elif [[ -n $options && $current == -* ]]; then
        words=$(_tallyquist_words "$command")
    else
        words=$(_tallyquist_words "$command $((arguments + 1))" || _tallyquist_words "$command")
    fi
    # Where no word is offered, the shell offers files by itself.
    [[ "$words " == *' FILE '* ]] || compopt +o default 2>/dev/null
    # shellcheck disable=SC2207
    COMPREPLY=($(compgen -W "${words/ FILE/}" -- "$current"))
}

complete -o default -F _tallyquist tallyquist
)sh";

void AddRow(std::string& table, const std::string& place, const std::string& words) {
    table.append("    '").append(place).append("') ");
    table.append(words.empty() ? ":" : "printf ' %s'").append(words).append(" ;;\n");
}

// Each word has a blank in front.
void AddWord(std::string& words, const std::string& word) {
    words.append(" ").append(word);
}

// What can be offered for a value that the help shows as `shape`, such as FILE or auto|csv.
std::string WordsFor(std::string shape) {
    constexpr auto FILES = std::to_array<std::string_view>({"FILE", "INPUT", "PATH"});
    shape.erase(std::min(shape.find(' '), shape.size()));  // (required)
    if (std::find(FILES.begin(), FILES.end(), shape) != FILES.end()) {
        return " FILE";
    }
    if (shape.find('|') == std::string::npos ||
        shape.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-|") != std::string::npos) {
        return "";
    }
    std::replace(shape.begin(), shape.end(), '|', ' ');
    return shape.insert(0, 1, ' ');
}

// A row for each option that takes a value, and one for the names of all.
void AddOptionRows(const CLI::App& line, const std::string& command, std::string& table) {
    std::string names;
    for (const CLI::Option* option : line.get_options()) {
        std::vector<std::string> spellings;
        for (const std::string& name : option->get_snames()) {
            spellings.push_back(std::string("-").append(name));
        }
        for (const std::string& name : option->get_lnames()) {
            spellings.push_back(std::string("--").append(name));
        }
        for (const std::string& spelling : spellings) {
            AddWord(names, spelling);
            if (option->get_items_expected_max() != 0) {
                AddRow(table, std::string(command).append(" ").append(spelling),
                       WordsFor(option->get_option_text()));
            }
        }
    }
    AddRow(table, command, names);
}

// The first argument's row has the commands below this one too.
void AddArgumentRows(const CLI::App& line, const std::string& command, std::string& table) {
    std::string words;
    for (const CLI::App* below : line.get_subcommands({})) {
        if (!below->get_group().empty()) {
            AddWord(words, below->get_name());
        }
    }
    int number = 0;
    for (const CLI::Option* option : line.get_options()) {
        if (option->get_positional()) {
            words.append(WordsFor(option->get_name(true, false)));
            // The last one may be given often. The quote ends before the pattern.
            const bool isList = option->get_items_expected_max() > 1;
            AddRow(table,
                   std::string(command).append(" ").append(isList ? "'[1-9]*'"
                                                                  : std::to_string(++number)),
                   words);
            words.clear();
        }
    }
    if (!words.empty()) {
        AddRow(table, std::string(command).append(" 1"), words);
    }
}

void AddRows(const CLI::App& line, const std::string& command, std::string& table) {
    AddOptionRows(line, command, table);
    AddArgumentRows(line, command, table);
    for (const CLI::App* below : line.get_subcommands({})) {
        AddRows(*below, std::string(command).append(" ").append(below->get_name()), table);
    }
}

}  // namespace

Command AddCompletionCommand(CLI::App& program) {
    CLI::App* line = AddCommandLine(program, "completion", "Print what completes commands.");
    line->group("");  // for those who install the program, not for its users
    line->require_subcommand(1);
    AddCommandLine(*line, "bash", "For bash, and for zsh with bashcompinit.");
    return {line, [&program] {
                std::string table;
                AddRows(program, program.get_name(), table);
                WriteStandardOutput(std::string(BEFORE_TABLE).append(table).append(AFTER_TABLE));
            }};
}

}  // namespace tallyquist
