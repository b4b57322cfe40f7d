#include "tools/camhook/commands/Commands.h"

#include <iostream>
#include <memory>
#include <string>

#include "common/sensormode/SensorModeTables.h"
#include "tools/camhook/explain/RulesCommand.h"
#include "tools/camhook/input/JsonLine.h"
#include "tools/camhook/input/KnownNames.h"
#include "tools/camhook/input/NearNames.h"
#include "tools/camhook/show/Terminal.h"

namespace camhook {
namespace {

struct RulesArguments {
  std::string product;
  bool check = false;
  std::string matrix;
};

/// Returns null for an empty name. Throws InputError if there is no table for the product.
const SensorModeTable* tableFor(const std::string& product) {
  const SensorModeTable* const table = hesk::findSensorModeTable(product);
  if (table != nullptr || product.empty()) return table;
  throw InputError("camhook: no rules for product " + jsonText(product) +
                   nearNames(product, kProductsWithRules));
}

int runRules(const RulesArguments& arguments) {
  const Style style = Style::forStandardOutput();
  const SensorModeTable* const only = tableFor(arguments.product);
  if (arguments.check) return checkRules(std::cout, only);
  if (const SensorModeTable* const table = tableFor(arguments.matrix)) {
    writeMatrix(std::cout, *table, style);
  } else {
    writeRulesText(std::cout, only, style);
  }
  return 0;
}

}  // namespace

void addRules(CLI::App& app, int& status) {
  const auto arguments = std::make_shared<RulesArguments>();
  CLI::App* command = app.add_subcommand("rules", "Show or check the rules of sensor modes");
  CLI::Option* const product = command->add_option("PRODUCT", arguments->product,
                                                   "Show or check the table of this product alone");
  CLI::Option* const check = command->add_flag(
      "--check", arguments->check,
      "Report rows that can never match; with PRODUCT, also print a matching decide command for "
      "each row");
  command
      ->add_option("--matrix", arguments->matrix,
                   "Show the sensor mode of each app and UI module on a product")
      ->excludes(product)
      ->excludes(check)
      ->type_name("PRODUCT");
  command->footer(
      "With --check the exit status is 1 if a row can never match.\n\n"
      "Example:\n  camhook rules KX0105");
  command->callback([arguments, &status] { status = runRules(*arguments); });
}

}  // namespace camhook
