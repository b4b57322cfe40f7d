// The room of reasons: why a decision came out as it did.
//
// May include all other rooms. No room includes commands/.

#pragma once
