// The room of rules: the choice of a sensor scenario as an open book. It reads the rules out of the
// library, decides by them itself, and asks the library whether that is right.
//
// May include show/, run/, input/, host/, platform/ and common/; not explain/.

#pragma once
