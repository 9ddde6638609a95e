// The room is furnished with its first sources.
