// Does not compile: the window set cannot be created.
trace("never printed";
