"""The commands of zmctl as methods, a module for each subject."""
