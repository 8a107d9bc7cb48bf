//Maya ASCII 2024 scene
//Name: hero.ma
requires maya "2024";
createNode transform -n "rig_grp";
createNode transform -n "root_ctrl" -p "rig_grp";
createNode nurbsCurve -n "root_ctrlShape" -p "root_ctrl";
	setAttr ".cc" -type "nurbsCurve" 
		1 1 0 no 3
		2 0 1
		2
		0 0 0
		1 0 0
		;
// End of hero.ma
