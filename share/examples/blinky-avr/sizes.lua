-- Builds the firmware at several levels of optimisation, tells how large it comes out, and keeps
-- the level that takes the least flash. Adds a text file for notes to the project as well.
--
--     tarn run --trust sizes.lua blinky-avr.tprj

local application = "blinky-avr"
local levels = { "s", "1", "2", "3" }

-- A file that isn't there yet is made, empty; one that is already in the project stays as it is.
tarn.SelectApplication(application)
if tarn.AddExistingItem("notes.txt", nil) == 0 then
  error("notes.txt can't be added")
end

local function set_level(level)
  tarn.SelectApplication(application)
  tarn.SavePropertyValue("Application", "Compiler", "Optimize", level)
  tarn.Command(0x8106) -- what was made with the old level is out of date
end

local best, least
for _, level in ipairs(levels) do
  set_level(level)
  if host.build() ~= "succeeded" then
    error("the build at level " .. level .. " failed")
  end
  local size = host.size(application)
  local flash = tonumber(size:match("flash (%d+)"))
  if not least or flash < least then
    best, least = level, flash
  end
  print(("level %s: %s"):format(level, size))
end

set_level(best)
host.build()
tarn.ProjectSave()
print(("kept level %s: %d bytes of flash"):format(best, least))
