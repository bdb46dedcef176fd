no scenario
