// The room of what comes in: scenarios, dumps of a phone, and their schema; JSON and errors that
// name their place. It reads and checks, and knows nothing of what is made of it.
//
// May include host/, platform/ and common/'s tags; no other room.

#pragma once
