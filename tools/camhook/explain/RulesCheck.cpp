// A row can decide if the filters find it for some inputs. If any inputs do, so do those that match
// exactly as many of its fields as it needs and have other values everywhere else: a further match
// could only help other rows.

#include <bit>
#include <ostream>

#include "common/sensormode/SensorModeTables.h"
#include "tools/camhook/explain/RulesCommand.h"

namespace camhook {
namespace {

std::string commandOf(const Inputs& inputs) {
  std::string command = "camhook decide";
  for (std::size_t i = 0; i < kInputCount; ++i) {
    const auto input = static_cast<InputIndex>(i);
    if (inputs[input].empty() || input == kSize || inputs[input] == "no") continue;
    command += " " + std::string(inputFields()[i].option());
    if (input != kVideo) command += " " + inputs[input];
  }
  return command;
}

/// The inputs without those that the row does not need.
Inputs reduced(DecidingPhone& phone, const Rules& rules, std::size_t row, Inputs inputs) {
  for (const RuleColumn& column : ruleColumns()) {
    Inputs without = inputs;
    if (without.set(column.input, "") && phone.rowFor(rules, without) == row) inputs = without;
  }
  return inputs;
}

}  // namespace

std::optional<Inputs> witnessOf(DecidingPhone& phone, const Rules& rules, std::size_t row,
                                const Inputs& given) {
  const auto columns = ruleColumns();
  const Rules* const lists[] = {&rules};
  const int needed = isOfSeveral(rules[row]) ? rules[row].conditionCount : 1;
  for (unsigned met = 0; met < 1U << columns.size(); ++met) {
    if (std::popcount(met) != needed) continue;
    Inputs inputs = given;
    bool isPossible = true;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const InputIndex input = columns[i].input;
      const std::string condition = columns[i].conditionOf(rules[row]);
      const bool isMet = (met >> i & 1U) != 0;
      // An empty APP_TYPE matches a row without one.
      isPossible &= !isMet || !condition.empty() || input == kAppType;
      inputs.set(input, isMet ? valueMeeting(input, condition)
                              : anotherValue(input, namedValues(input, lists)));
    }
    if (isPossible && phone.rowFor(rules, inputs) == row) return reduced(phone, rules, row, inputs);
  }
  return {};
}

/// Checks each row of a list. Returns how many rows can never decide.
std::size_t checkList(std::ostream& out, DecidingPhone& phone, const SensorModeTable& table,
                      const RuleList& list, bool showsWitnesses) {
  const Rules& rules = table.*list.rules;
  std::size_t never = 0;
  if (showsWitnesses) out << list.name << '\n';
  for (std::size_t row = 0; row < rules.size(); ++row) {
    const auto witness =
        witnessOf(phone, rules, row, Inputs(table.productName, list.sensor, list.video));
    never += witness ? 0 : 1;
    if (showsWitnesses) {
      out << "  row " << row + 1 << "  " << (witness ? commandOf(*witness) : "can never decide")
          << '\n';
    } else if (!witness) {
      out << table.productName << ' ' << list.name << ": row " << row + 1 << " can never decide\n";
    }
  }
  return never;
}

int checkRules(std::ostream& out, const SensorModeTable* only) {
  DecidingPhone phone;
  std::size_t count = 0;
  std::size_t never = 0;
  for (const SensorModeTable& table : hesk::sensorModeTables()) {
    if (only != nullptr && &table != only) continue;
    for (const RuleList& list : kRuleLists) {
      count += (table.*list.rules).size();
      never += checkList(out, phone, table, list, only != nullptr);
    }
  }
  if (never == 0) out << "each of the " << count << " rows can decide\n";
  return never == 0 ? 0 : 1;
}

}  // namespace camhook
