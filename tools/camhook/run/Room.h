// The room in which things happen: calls on the simulated phone, and what each of them did.
//
// May include input/, host/, platform/ and common/; neither show/, rules/ nor explain/.

#pragma once
