//Maya ASCII 2025 scene
//Name: demo_scene.ma
//Codeset: UTF-8
file -rdi 1 -ns "hero" -rfn "heroRN" -op "v=0;" -typ "mayaAscii" "biped_rig.ma";
file -rdi 1 -ns "villain" -rfn "villainRN" -op "v=0;" -typ "mayaAscii" "biped_rig.ma";
file -r -ns "hero" -dr 1 -rfn "heroRN" -op "v=0;" -typ "mayaAscii" "biped_rig.ma";
file -r -ns "villain" -dr 1 -rfn "villainRN" -op "v=0;" -typ "mayaAscii" "biped_rig.ma";
requires maya "2025";
currentUnit -l centimeter -a degree -t film;
fileInfo "application" "maya";
fileInfo "product" "Maya 2025";
fileInfo "version" "2025";
fileInfo "UUID" "3F9B2D71-45A8-1C6E-90D4-B8E27A5C0F16";
createNode reference -n "heroRN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"heroRN"
		"heroRN" 0;
	setAttr ".ptag" -type "string" "";
lockNode -l 1 ;
createNode reference -n "villainRN";
	setAttr ".ed" -type "dataReferenceEdits" 
		"villainRN"
		"villainRN" 0
		"villainRN" 1
		2 "|villain:rig_grp|villain:controls_grp|villain:root_offset|villain:root_ctrl" "translate" " -type \"double3\" 100 0 0";
	setAttr ".ptag" -type "string" "";
lockNode -l 1 ;
// End of demo_scene.ma
