// Searches for inputs with which the filters find a row. It is enough to try inputs that match
// exactly as many fields of the row as it needs and have other values everywhere else: a further
// match could only help other rows.

#include <algorithm>
#include <bit>
#include <ostream>

#include "tools/camhook/explain/RulesCommand.h"

namespace camhook {
namespace {

std::string commandOf(const DecisionInputs& inputs) {
  std::string command = "camhook decide";
  for (const DecisionInputField& field : decisionInputFields()) {
    const Json& value = inputs[field.name];
    if (value.isNull() || value == false) continue;
    command.append(" ").append(field.option());
    if (value != true) command.append(" ").append(decisionInputText(field.name, value));
  }
  return command;
}

/// The inputs without those that the row does not need.
DecisionInputs reduced(DecidingPhone& phone, const Rules& rules, std::size_t row,
                       DecisionInputs inputs) {
  for (const RuleColumn& column : kRuleColumns) {
    DecisionInputs without = inputs;
    without[column.input] = nullptr;
    if (phone.rowFor(rules, without) == row) inputs = without;
  }
  return inputs;
}

}  // namespace

std::optional<DecisionInputs> witnessOf(DecidingPhone& phone, const Rules& rules, std::size_t row,
                                        const DecisionInputs& given) {
  const int needed = std::max(rules[row].conditionCount, 1);
  for (unsigned met = 0; met < 1U << std::size(kRuleColumns); ++met) {
    if (std::popcount(met) != needed) continue;
    DecisionInputs inputs = given;
    bool isPossible = true;
    for (std::size_t i = 0; i < std::size(kRuleColumns); ++i) {
      const std::string_view input = kRuleColumns[i].input;
      const Json condition = kRuleColumns[i].conditionOf(rules[row]);
      const bool isMet = (met >> i & 1U) != 0;
      // An empty APP_TYPE matches a row without one.
      isPossible &= !isMet || !condition.isNull() || input == kAppType;
      inputs[input] = isMet ? valueMeeting(input, condition) : anotherValue(input);
    }
    if (isPossible && phone.rowFor(rules, inputs) == row) return reduced(phone, rules, row, inputs);
  }
  return {};
}

int checkRules(std::ostream& out, const SensorModeTable* only) {
  DecidingPhone phone;
  std::size_t count = 0;
  std::size_t never = 0;
  for (const SensorModeTable& table : tablesOf(only)) {
    for (const RuleList& list : kRuleLists) {
      const DecisionInputs given = decisionInputsOf(table.productName, list.sensor, list.video);
      const Rules& rules = table.*list.rules;
      for (std::size_t row = 0; row < rules.size(); ++row, ++count) {
        const auto witness = witnessOf(phone, rules, row, given);
        never += witness ? 0 : 1;
        if (witness && only == nullptr) continue;
        out << table.productName << ' ' << list.name << " row " << row + 1 << ": "
            << (witness ? commandOf(*witness) : "can never match") << '\n';
      }
    }
  }
  if (never == 0) out << "all " << count << " rows can match\n";
  return never == 0 ? 0 : 1;
}

}  // namespace camhook
