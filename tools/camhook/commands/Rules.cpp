#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/camhook/input/Json.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/rules/RulesCommand.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct RulesArguments {
  std::string product;
  bool json = false;
  bool check = false;
  std::string assume;
  std::string matrix;
  std::vector<std::string> compare;
};

/// Throws InputError where no table is for the product.
const SensorModeTable& tableOf(const RuleSet& rules, const std::string& product) {
  if (const SensorModeTable* const table = rules.tableFor(product)) return *table;
  std::vector<std::string_view> known;
  for (const SensorModeTable& table : rules.tables) known.emplace_back(table.productName);
  throw InputError("camhook: no table is for product " + jsonText(product) +
                   nearNames(product, known));
}

int rules(const RulesArguments& arguments) {
  const Style style = Style::forStandardOutput();
  if (!arguments.compare.empty()) {
    const auto read = [](const std::string& file) {
      return readFile(file, [](const std::string& text) { return rulesFromJson(parseJson(text)); });
    };
    return compareRules(std::cout, read(arguments.compare[0]), read(arguments.compare[1]), style);
  }
  RuleSet shown = rulesOfLibrary();
  if (!arguments.product.empty()) shown.tables = {tableOf(shown, arguments.product)};
  if (arguments.check) {
    return checkRules(std::cout, shown, {.isAppTypeSet = !arguments.assume.empty()}, style);
  }
  if (!arguments.matrix.empty()) {
    writeMatrix(std::cout, shown, tableOf(shown, arguments.matrix), style);
  } else if (arguments.json) {
    writeJson(std::cout, jsonFromRules(shown));
  } else {
    writeRulesText(std::cout, shown, style);
  }
  return 0;
}

}  // namespace

void addRules(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<RulesArguments>();
  CLI::App* command =
      app.add_subcommand("rules", "Show, prove or compare the rules of sensor scenarios");
  CLI::Option* const product = command->add_option("PRODUCT", arguments->product,
                                                   "Show or prove the table of this product alone");
  auto* ways = command->add_option_group("ways", "What to do instead of showing tables");
  ways->add_flag("--json", arguments->json, "Write the tables as JSON");
  CLI::Option* const check = ways->add_flag("--check", arguments->check,
                                            "Prove of each row that it can decide, or cannot");
  ways->add_option("--matrix", arguments->matrix, "Show what each app and module gets on a product")
      ->excludes(product)
      ->type_name("PRODUCT");
  ways->add_option("--compare", arguments->compare,
                   "Tell for which inputs two of --json decide differently")
      ->expected(2)
      ->excludes(product)
      ->type_name("OLD NEW");
  ways->require_option(0, 1);
  command->add_option("--assume", arguments->assume, "Prove it for phones of which this holds")
      ->check(oneOf({"app-type-set"}))
      ->needs(check)
      ->type_name("WHAT");
  command->footer(
      "With --check the exit status is 1 where a row can never decide, with --compare where\n"
      "something differs.\n\n"
      "Example:\n  camhook rules KX0105");
  command->callback([arguments, &status] { status = rules(*arguments); });
}

}  // namespace camhook
