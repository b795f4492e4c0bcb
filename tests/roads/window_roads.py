"""The windows behind the toolbar and the buttons."""
ROADS = ()
