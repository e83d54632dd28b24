// Prints, from the tables that the agent serves its objects with, docs/objects.md, or the MIB
// module that the argument names.
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "src/mibs/fcmgmt/fcmgmt.h"
#include "src/mibs/femgmt/femgmt.h"
#include "src/mibs/norbex/norbex.h"
#include "tools/mib_text.h"

namespace snmpmain {
namespace {

const char* NameOfType(std::uint8_t type) {
    switch (type) {
        case ASN_INTEGER:
            return "INTEGER";
        case ASN_OCTET_STR:
            return "OCTET STRING";
        case ASN_OBJECT_ID:
            return "OBJECT IDENTIFIER";
        case ASN_IPADDRESS:
            return "IpAddress";
        case ASN_COUNTER:
            return "Counter32";
        case ASN_GAUGE:
            return "Gauge32";
        default:
            return "TimeTicks";
    }
}

std::string Octets(const ValueSource& source) {
    std::string text = "octets";
    for (std::uint32_t i = 0; i < source.number; ++i) {
        char digits[8];
        std::snprintf(digits, sizeof(digits), " %02X", static_cast<unsigned char>(source.text[i]));
        text += digits;
    }
    return text;
}

// Where a value comes from; `quote` stands around commands.
std::string Origin(const ValueSource& source, const char* quote) {
    if (source.read == nullptr) {
        return "never answers";
    }
    if (source.command != nullptr) {
        return std::string(quote) + source.command + quote;
    }
    if (source.read == ReadConstant) {
        return "always " + std::to_string(source.number);
    }
    if (source.read == ReadConstantText) {
        return "always \"" + std::string(source.text) + "\"";
    }
    if (source.read == ReadConstantOctets) {
        return "always " + Octets(source);
    }
    std::string text = source.origin != nullptr ? source.origin : "";
    const char* separator = source.origin != nullptr ? "; " : "";
    for (const char* command : source.commands) {
        text += std::string(separator) + quote + command + quote;
        separator = ", ";
    }
    return text.empty() ? "index" : text;
}

const char* NameOfAccess(const Column& column) {
    switch (column.set.access) {
        case Access::kReadOnly:
            return "read-only";
        case Access::kReadCreate:
            return "read-create";
        default:
            return column.source.read != nullptr ? "read-write" : "read-write, refused";
    }
}

// Null for the vendor's module, which is written by hand.
const TableText* TextOfTable(const ServedTable& table) {
    for (const ModuleText* module : {&kFcmgmtText, &kFeText}) {
        for (const TableText& text : module->tables) {
            if (&text.served == &table) {
                return &text;
            }
        }
    }
    return nullptr;
}

void PrintList(const MibModule& module) {
    std::string prefix;
    for (const oid number : module.prefix) {
        prefix += "." + std::to_string(number);
    }
    std::printf("\n## %s, %s\n\n", module.name, prefix.c_str() + 1);
    std::printf("| below | object | type | access | value |\n|---|---|---|---|---|\n");
    for (const auto& [table, handler] : module.tables) {
        std::string suffix;
        for (std::size_t i = 0; i < LengthOf(table.entry); ++i) {
            suffix += std::to_string(table.entry[i]) + ".";
        }
        const TableText* text = TextOfTable(table);
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const Column& column = table.columns[i];
            std::printf("| %s%d | %s | %s | %s | %s |\n", suffix.c_str(), column.suffix,
                        text != nullptr ? text->objects[i].object : column.object,
                        NameOfType(column.type), NameOfAccess(column),
                        Origin(column.source, "`").c_str());
        }
    }
}

void PrintLists() {
    std::printf(
        "# Objects served\n\n"
        "Made by the program `object_list` from the agent's own tables; `script/test` checks that "
        "it\n"
        "is up to date.\n\n"
        "The value's column gives the command that is sent to the switch, with places for a\n"
        "blade's and a port's number or for a key. Other values are constants, come from the\n"
        "instance's index, or are made of several replies or of what the agent keeps.\n");
    PrintList(fcmgmt::kModule);
    PrintList(femgmt::kModule);
    PrintList(norbex::kModule);
}

int status = 0;

void Complain(const char* object, const std::string& complaint) {
    std::fprintf(stderr, "%s: %s\n", object, complaint.c_str());
    status = 1;
}

// The texts stand in the order of the columns. Returns 0 or -1.
int CheckTexts() {
    for (const ModuleText* module : {&kFcmgmtText, &kFeText}) {
        for (const TableText& text : module->tables) {
            if (!std::ranges::equal(text.served.columns, text.objects,
                                    [](const Column& column, const auto& object) {
                                        return column.object == nullptr ||
                                               std::strcmp(column.object, object.object) == 0;
                                    })) {
                Complain(text.objects[0].object, "begins other texts than the table's");
                return -1;
            }
        }
    }
    return 0;
}

// The words of `text` in lines of at most 68 characters behind the indentation.
std::string Fill(std::string text, std::size_t indent) {
    constexpr std::size_t kWidth = 68;
    for (std::size_t line = 0; line + kWidth - indent < text.size();) {
        const std::size_t blank = text.rfind(' ', line + kWidth - indent);
        text.replace(blank, 1, "\n" + std::string(indent, ' '));
        line = blank + 1 + indent;
    }
    return text;
}

void PrintDescription(const std::string& text) {
    std::string quoted = text;
    std::ranges::replace(quoted, '"', '\'');
    std::printf("    DESCRIPTION\n        \"%s\"\n", quoted.c_str());
}

// An object as far as its description.
void PrintObject(const ModuleText& module, const char* name, const std::string& syntax,
                 const char* units, const char* access) {
    std::printf("\n%s OBJECT-TYPE\n    SYNTAX      %s\n", name, Fill(syntax, 16).c_str());
    if (units != nullptr) {
        std::printf("    UNITS       \"%s\"\n", units);
    }
    std::printf(module.isVersion2 ? "    MAX-ACCESS  %s\n    STATUS      current\n"
                                  : "    ACCESS      %s\n    STATUS      mandatory\n",
                access);
}

std::string SyntaxOf(const ModuleText& module, const Column& column, const ObjectText& text) {
    if (text.syntax != nullptr) {
        return text.syntax;
    }
    if (column.type == ASN_OCTET_STR) {
        return "DisplayString";
    }
    return module.isVersion2 && column.type == ASN_INTEGER ? "Integer32" : NameOfType(column.type);
}

// A syntax without its range, size or words.
std::string Unrefined(const std::string& syntax) {
    return syntax.substr(0, std::min(syntax.find(" ("), syntax.find(" {")));
}

// Every number that the tables know needs its word where the others have one.
void CheckWords(const char* object, const std::string& syntax, const Column& column) {
    std::vector<std::uint32_t> numbers;
    if (column.source.read == ReadConstant) {
        numbers.push_back(column.source.number);
    }
    if (column.source.words != nullptr) {
        numbers.push_back(column.source.words->otherwise);
        for (const Word& word : column.source.words->words) {
            numbers.push_back(word.number);
        }
    }
    for (const Choice& choice : column.set.choices) {
        numbers.push_back(static_cast<std::uint32_t>(choice.value));
    }
    for (const std::uint32_t number : numbers) {
        if (syntax.find('{') != std::string::npos &&
            syntax.find("(" + std::to_string(number) + ")") == std::string::npos) {
            Complain(object, "has no word for " + std::to_string(number));
        }
    }
}

std::string Describe(const ObjectText& text, const Column& column) {
    const std::string origin = Origin(column.source, "");
    return Fill(text.text, 8) + "\n        " +
           Fill(origin.starts_with("never answers") ? "These switches do not tell it."
                                                    : "Source: " + origin + ".",
                8);
}

// The table, its entry and their parts' types. `entry` is the name of the entry.
void PrintTableHead(const ModuleText& module, const TableText& text, const std::string& entry) {
    const ServedTable& table = text.served;
    std::string type = entry;
    type[0] = static_cast<char>(std::toupper(type[0]));
    PrintObject(module, text.name, "SEQUENCE OF " + type, nullptr, "not-accessible");
    PrintDescription(Fill(std::string("Each row is ") + text.row, 8));
    std::printf("    ::= { %s %d }\n", text.parent, table.entry[LengthOf(table.entry) - 2]);

    PrintObject(module, entry.c_str(), type, nullptr, "not-accessible");
    PrintDescription(std::string("A row of ") + text.name + ".");
    std::printf("    %s\n    ::= { %s 1 }\n", Fill(text.index, 12).c_str(), text.name);

    std::printf("\n%s ::= SEQUENCE {\n", type.c_str());
    if (text.indexObject != nullptr) {
        std::printf("    %s %s,\n", text.indexObject->object,
                    Unrefined(text.indexObject->syntax).c_str());
    }
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        const ObjectText& object = text.objects[i];
        std::printf("    %s %s%s\n", object.object,
                    Unrefined(SyntaxOf(module, table.columns[i], object)).c_str(),
                    i + 1 < table.columns.size() ? "," : "");
    }
    std::printf("}\n");
    if (const ObjectText* index = text.indexObject; index != nullptr) {
        PrintObject(module, index->object, index->syntax, nullptr, "not-accessible");
        PrintDescription(Fill(index->text, 8));
        std::printf("    ::= { %s 1 }\n", entry.c_str());
    }
}

void PrintTable(const ModuleText& module, const TableText& text) {
    std::string parent = text.parent;
    if (text.name != nullptr) {
        parent = text.name;
        parent.replace(parent.rfind("Table"), std::strlen("Table"), "Entry");
        PrintTableHead(module, text, parent);
    }
    for (std::size_t i = 0; i < text.objects.size(); ++i) {
        const Column& column = text.served.columns[i];
        const ObjectText& object = text.objects[i];
        const std::string syntax = SyntaxOf(module, column, object);
        CheckWords(object.object, syntax, column);
        PrintObject(module, object.object, syntax, object.units,
                    column.set.access == Access::kReadOnly ? "read-only" : "read-write");
        PrintDescription(Describe(object, column));
        std::printf("    ::= { %s %d }\n", parent.c_str(), column.suffix);
    }
}

// The second version of the SMI wants all objects in groups: one for those below each node.
void PrintGroups(const ModuleText& module) {
    int groups = 0;
    for (auto first = module.tables.begin(); first != module.tables.end();) {
        const auto next = std::find_if(first, module.tables.end(), [&](const TableText& table) {
            return std::strcmp(table.parent, first->parent) != 0;
        });
        std::string objects;
        for (auto table = first; table != next; ++table) {
            for (const ObjectText& object : table->objects) {
                objects += (objects.empty() ? "" : ", ") + std::string(object.object);
            }
        }
        std::printf("\n%sGroup OBJECT-GROUP\n    OBJECTS     { %s }\n    STATUS      current\n",
                    first->parent, Fill(objects, 18).c_str());
        PrintDescription(std::string("The objects below ") + first->parent + ".");
        std::printf("    ::= { fcFeMIBGroups %d }\n", ++groups);
        first = next;
    }
}

void PrintModule(const ModuleText& module) {
    std::printf(
        "-- Made by the program object_list from the agent's own tables.\n\n"
        "%s DEFINITIONS ::= BEGIN\n\n%s",
        module.name, module.head);
    for (const TableText& table : module.tables) {
        PrintTable(module, table);
    }
    if (module.isVersion2) {
        PrintGroups(module);
    }
    std::printf("%s\nEND\n", module.tail);
}

}  // namespace
}  // namespace snmpmain

int main(int argumentCount, char** arguments) {
    using namespace snmpmain;
    if (CheckTexts() != 0) {
        return 1;
    }
    if (argumentCount == 1) {
        PrintLists();
        return status;
    }
    for (const ModuleText* module : {&kFcmgmtText, &kFeText}) {
        if (std::strcmp(arguments[1], module->name) == 0) {
            PrintModule(*module);
            return status;
        }
    }
    std::fprintf(stderr, "usage: object_list [FCMGMT-MIB | FIBRE-CHANNEL-FE-MIB]\n");
    return 1;
}
