// All views are known.
page.start();
